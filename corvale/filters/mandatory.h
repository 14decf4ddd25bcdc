#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Waits until several values are there together, and hands all of them on, or none.
///
/// | port         | kind | shape and unit         | when missing         |
/// | in1 to inN   | any  |                        | nothing goes out     |
/// | out1 to outN | any  | the value of its input |                      |
/// Threads: thread-safe, keeps no state. Failure: none.
class Mandatory : public FilterPrimitive
{
public:
    /// `count` is the number of pairs of ports.
    Mandatory(const std::string& name, int count);

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
    Values consume(Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                   long long depth) override;

private:
    const int _count;
};

} // namespace ZR::Corvale::Filters
