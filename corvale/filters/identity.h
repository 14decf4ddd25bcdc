#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Hands on what comes in.
///
/// | port | kind | shape and unit   | when missing |
/// | in   | any  |                  | no result    |
/// | out  | any  | the value of in  |              |
/// Threads: thread-safe, keeps no state. Failure: none.
class Identity : public FilterPrimitive
{
public:
    Identity();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
    Values consume(Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                   long long depth) override;
};

} // namespace ZR::Corvale::Filters
