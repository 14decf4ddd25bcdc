#include "corvale/filters/multiplex.h"

#include "corvale/runtime/port.h"

namespace ZR::Corvale::Filters {

Multiplex::Multiplex() : FilterPrimitive("Multiplex")
{
    _addInput("master")->setOptional(true);
    _addInput("slave")->setOptional(true);
    _addOutput("out");
}

Values Multiplex::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    for (const boost::shared_ptr<Data>& value : inputs)
        if (value)
            return one(value);
    return one(boost::shared_ptr<Data>());
}

} // namespace ZR::Corvale::Filters
