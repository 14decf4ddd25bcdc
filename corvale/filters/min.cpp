#include "corvale/filters/min.h"

#include "corvale/filters/arithmetic.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.min");
const Kinds operands{DataType::Integer, DataType::Float, DataType::Double, DataType::ColorImage,
                     DataType::GrayscaleImage};

const InputGuards guards(category, "Min", operandGuards(operands));

struct Lesser
{
    template <typename Number>
    Number operator()(Number left, Number right) const
    {
        return left < right ? left : right;
    }
};

} // namespace

Min::Min() : FilterPrimitive("Min")
{
    accept(_addInput("left"), operands);
    accept(_addInput("right"), operands);
    _addOutput("out");
}

Values Min::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    return guards.admit(inputs) ? combine<Lesser>(inputs, guards) : Values();
}

} // namespace ZR::Corvale::Filters
