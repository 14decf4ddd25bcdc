#include "corvale/filters/apply.h"

#include "corvale/data/datalambda.h"
#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.apply");
const InputGuards guards(category, "Apply",
                         {Guard::kind(0, {DataType::Lambda}), Guard::intact(0),
                          Guard::kind(1, {DataType::Array})});

} // namespace

Apply::Apply() : FilterPrimitive("Apply")
{
    accept(_addInput("fun"), {DataType::Lambda});
    accept(_addInput("param"), {DataType::Array});
    _addOutput("out");
}

Values Apply::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    return payload<Type::Lambda>(inputs[0])->apply(*payload<Values>(inputs[1]));
}

} // namespace ZR::Corvale::Filters
