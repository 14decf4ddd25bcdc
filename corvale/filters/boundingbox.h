#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Finds the boxes around regions, from the least to the greatest column and row of their pixels.
///
/// | port      | kind       | shape and unit                          | when missing |
/// | in        | LabelImage | rows x columns                          | no result    |
/// | out       | Array      | Region2, pixels, in the order of labels |              |
/// | inputSize | Vector2    | columns, rows                           |              |
/// A region of one column has no box. A label below 0 or from rows * columns on is background.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind or has more than 65,535 rows or columns.
class BoundingBox : public FilterPrimitive
{
public:
    BoundingBox();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
