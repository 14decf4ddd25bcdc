#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Grows regions over the background until they meet.
///
/// | port | kind       | shape and unit                                          | when missing |
/// | in   | LabelImage | rows x columns, 0: background                           | no result    |
/// | out  | LabelImage | as in, with its origin; without background, unless that |              |
/// |      |            | is all there was                                        |              |
/// A pixel of the background takes the label of the nearest pixel of a region, in steps along rows and
/// columns; of several that are equally near, the first in the order of rows.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one error
/// line if the matrix does not suit its kind.
class Geodesic : public FilterPrimitive
{
public:
    Geodesic();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
