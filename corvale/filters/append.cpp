#include "corvale/filters/append.h"

#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.append");

bool hasItem(const Values& inputs)
{
    return !inputs.empty();
}

bool extendsArray(const Values& inputs)
{
    return inputs.size() < 2 || !inputs[1] || inputs[1]->getType() == DataType::Array;
}

const InputGuards guards(category, "Append", {Guard::that(hasItem), Guard::that(extendsArray)});

} // namespace

Append::Append() : FilterPrimitive("Append")
{
    _addInput("item");
    const boost::shared_ptr<Port> array = _addInput("array");
    accept(array, {DataType::Array});
    array->setOptional(true);
    _addOutput("out");
}

Values Append::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    Values array;
    if (inputs.size() >= 2 && inputs[1])
        array = *payload<Values>(inputs[1]);
    array.push_back(inputs[0]);
    return one(array);
}

} // namespace ZR::Corvale::Filters
