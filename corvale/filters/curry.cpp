#include "corvale/filters/curry.h"

#include "corvale/data/datalambda.h"
#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.curry");
const InputGuards guards(category, "Curry",
                         {Guard::kind(0, {DataType::Lambda}), Guard::intact(0),
                          Guard::kind(1, {DataType::Array})});

} // namespace

Curry::Curry() : FilterPrimitive("Curry")
{
    accept(_addInput("fun"), {DataType::Lambda});
    accept(_addInput("param"), {DataType::Array});
    _addOutput("out");
}

Values Curry::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const boost::shared_ptr<Type::Lambda> bound = payload<Type::Lambda>(inputs[0])->clone();
    if (!bound)
        return {};
    bound->curry(*payload<Values>(inputs[1]));
    return one(bound);
}

} // namespace ZR::Corvale::Filters
