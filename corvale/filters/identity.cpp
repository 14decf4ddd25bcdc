#include "corvale/filters/identity.h"

#include "corvale/runtime/port.h"

#include <utility>

namespace ZR::Corvale::Filters {

Identity::Identity() : FilterPrimitive("Identity")
{
    _addInput("in");
    _addOutput("out");
}

Values Identity::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    return inputs;
}

Values Identity::consume(Values& inputs, const StringHash&, const StringHash&, long long)
{
    return std::move(inputs);
}

} // namespace ZR::Corvale::Filters
