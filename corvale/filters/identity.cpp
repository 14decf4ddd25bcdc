#include "corvale/filters/identity.h"

#include "corvale/runtime/port.h"

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

} // namespace ZR::Corvale::Filters
