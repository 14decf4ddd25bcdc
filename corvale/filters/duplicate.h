#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Hands one value on to two outputs, which share it.
///
/// | port  | kind | shape and unit  | when missing |
/// | in    | any  |                 | no result    |
/// | left  | any  | the value of in |              |
/// | right | any  | the value of in |              |
/// Threads: thread-safe, keeps no state. Failure: none.
class Duplicate : public FilterPrimitive
{
public:
    Duplicate();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
    Values consume(Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                   long long depth) override;
};

} // namespace ZR::Corvale::Filters
