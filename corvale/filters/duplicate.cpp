#include "corvale/filters/duplicate.h"

#include "corvale/runtime/port.h"

#include <utility>

namespace ZR::Corvale::Filters {

Duplicate::Duplicate() : FilterPrimitive("Duplicate")
{
    _addInput("in");
    _addOutput("left");
    _addOutput("right");
}

Values Duplicate::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (inputs.size() != 1)
        return {};
    return Values(2, inputs[0]);
}

Values Duplicate::consume(Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (inputs.size() != 1)
        return {};
    inputs.push_back(inputs[0]);
    return std::move(inputs);
}

} // namespace ZR::Corvale::Filters
