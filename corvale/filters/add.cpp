#include "corvale/filters/add.h"

#include "corvale/filters/arithmetic.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.add");
const Kinds operands{DataType::Integer,    DataType::Float,          DataType::Double,
                     DataType::ColorImage, DataType::GrayscaleImage, DataType::BinaryImage};

const InputGuards guards(category, "Add", operandGuards(operands));

struct Sum
{
    template <typename Real>
    Real operator()(Real left, Real right) const
    {
        return left + right;
    }
    int operator()(int left, int right) const
    {
        return static_cast<int>(static_cast<unsigned>(left) + static_cast<unsigned>(right));
    }
    // In bytes from beginning to end: in wider numbers it would take half as many at a time.
    uchar operator()(uchar left, uchar right) const
    {
        const auto sum = static_cast<uchar>(left + right);
        return sum < left ? 255 : sum; // a sum beyond 255 comes around
    }
};

} // namespace

Add::Add() : FilterPrimitive("Add")
{
    accept(_addInput("left"), operands);
    accept(_addInput("right"), operands);
    _addOutput("out");
}

Values Add::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    if (const boost::shared_ptr<Data> sum = combinedNumbers<Sum>(inputs[0], inputs[1]))
        return one(sum);
    const cv::Mat left = dataToCvMat(inputs[0]);
    const cv::Mat right = dataToCvMat(inputs[1]);
    // Sizes that differ are for OpenCV to judge, which throws.
    const cv::Mat sum =
        left.size() == right.size() ? combinedPixels<Sum>(left, right) : cv::Mat(left + right);
    return one(cvMatToData(sum, inputs[0]->getType(), inputs[0]));
}

} // namespace ZR::Corvale::Filters
