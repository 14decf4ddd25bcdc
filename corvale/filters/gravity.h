#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Finds the centres of regions: the mean column and row of their pixels.
///
/// | port | kind       | shape and unit                          | when missing |
/// | in   | LabelImage | rows x columns                          | no result    |
/// | out  | Array      | Vector2, pixels, in the order of labels |              |
/// A label that does not occur has no element; one below 0 or above rows * columns is background.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind or has more than 65,535 rows or columns.
class Gravity : public FilterPrimitive
{
public:
    Gravity();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
