#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Hands a value on to one of two outputs, and nothing to the other.
///
/// | port    | kind    | shape and unit           | when missing     |
/// | in      | any     |                          | nothing goes out |
/// | state   | Boolean |                          | no result        |
/// | ontrue  | any     | in, while state is true  |                  |
/// | onfalse | any     | in, while state is false |                  |
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line if state is null.
class Dispatch : public FilterPrimitive
{
public:
    Dispatch();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
