#include "corvale/filters/head.h"

#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.head");
const InputGuards guards(category, "Head",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::Array}).quietly()});

} // namespace

Head::Head() : FilterPrimitive("Head")
{
    accept(_addInput("in"), {DataType::Array});
    _addOutput("out");
}

Values Head::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const Values& array = *payload<Values>(inputs[0]);
    return one(array.empty() ? boost::shared_ptr<Data>() : array.front());
}

} // namespace ZR::Corvale::Filters
