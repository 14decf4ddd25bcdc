#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Gives the first element of an array.
///
/// | port | kind  | shape and unit                            | when missing |
/// | in   | Array | any length                                | no result    |
/// | out  | any   | the first element; nothing of an empty in |              |
/// Threads: thread-safe, keeps no state. Failure: empty result.
class Head : public FilterPrimitive
{
public:
    Head();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
