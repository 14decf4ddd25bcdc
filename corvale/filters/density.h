#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Keeps the regions of a certain size; the others become background. Labels stay as they are, with gaps.
///
/// | port | kind       | shape and unit                    | when missing |
/// | in   | LabelImage | rows x columns                    | no result    |
/// | min  | Integer    | pixels that a region has at least | no result    |
/// | max  | Integer    | pixels that it has at most        | no result    |
/// | out  | LabelImage | as in, with its origin            |              |
/// A label below 0 or above rows * columns is background.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Density : public FilterPrimitive
{
public:
    Density();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
