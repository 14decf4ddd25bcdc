#include "corvale/filters/sub.h"

#include "corvale/filters/arithmetic.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.sub");
const Kinds operands{DataType::Integer,    DataType::Float,          DataType::Double,
                     DataType::ColorImage, DataType::GrayscaleImage, DataType::DepthImage};

const InputGuards guards(category, "Sub", operandGuards(operands));

// Signed for numbers, absolute for components of pixels.
struct Difference
{
    template <typename Real>
    Real operator()(Real left, Real right) const
    {
        return left - right;
    }
    int operator()(int left, int right) const
    {
        return static_cast<int>(static_cast<unsigned>(left) - static_cast<unsigned>(right));
    }
    uchar operator()(uchar left, uchar right) const { return distance(left, right); }
    ushort operator()(ushort left, ushort right) const { return distance(left, right); }

private:
    template <typename Component>
    static Component distance(Component left, Component right)
    {
        return static_cast<Component>(std::max(left, right) - std::min(left, right));
    }
};

} // namespace

Sub::Sub() : FilterPrimitive("Sub")
{
    accept(_addInput("left"), operands);
    accept(_addInput("right"), operands);
    _addOutput("out");
}

Values Sub::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    return guards.admit(inputs) ? combine<Difference>(inputs, guards) : Values();
}

} // namespace ZR::Corvale::Filters
