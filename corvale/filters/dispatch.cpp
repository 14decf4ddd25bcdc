#include "corvale/filters/dispatch.h"

#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.dispatch");
const InputGuards guards(category, "Dispatch", {Guard::present(1)});

} // namespace

Dispatch::Dispatch() : FilterPrimitive("Dispatch")
{
    _addInput("in")->setOptional(true);
    accept(_addInput("state"), {DataType::Boolean});
    _addOutput("ontrue");
    _addOutput("onfalse");
}

Values Dispatch::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    const boost::shared_ptr<Data> nothing;
    if (inputs.size() != 2)
        return {nothing, nothing};
    if (!guards.admit(inputs))
        return {};
    return number<bool>(inputs[1]) ? Values{inputs[0], nothing} : Values{nothing, inputs[0]};
}

} // namespace ZR::Corvale::Filters
