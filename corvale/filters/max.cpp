#include "corvale/filters/max.h"

#include "corvale/filters/arithmetic.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.max");
const Kinds operands{DataType::Integer, DataType::Float, DataType::Double, DataType::ColorImage,
                     DataType::GrayscaleImage};

const InputGuards guards(category, "Max", operandGuards(operands));

struct Greater
{
    template <typename Number>
    Number operator()(Number left, Number right) const
    {
        return left > right ? left : right;
    }
};

} // namespace

Max::Max() : FilterPrimitive("Max")
{
    accept(_addInput("left"), operands);
    accept(_addInput("right"), operands);
    _addOutput("out");
}

Values Max::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    return guards.admit(inputs) ? combine<Greater>(inputs, guards) : Values();
}

} // namespace ZR::Corvale::Filters
