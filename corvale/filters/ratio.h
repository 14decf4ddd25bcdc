#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Keeps regions of a certain shape: width over height, each the difference between the outermost coordinates
/// and so one less than the number of pixels.
///
/// | port | kind              | shape and unit                              | when missing |
/// | in   | LabelImage, Array | rows x columns; Region2 elements            | no result    |
/// | min  | Float             | the least ratio that is kept                | no result    |
/// | max  | Float             | the greatest                                | no result    |
/// | out  | that of in        | an image with its origin; the same elements |              |
/// In an image, a region of one row or one column has the ratio 0, and a label below 0 or above
/// rows * columns is background. From an array, boxes without height and other elements are left out.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind or has more than 65,535 rows or columns.
class Ratio : public FilterPrimitive
{
public:
    Ratio();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
