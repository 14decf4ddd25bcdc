#include "corvale/filters/multiply.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/arithmetic.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <opencv2/core.hpp>

#include <algorithm>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.multiply");
const Kinds operands{DataType::Integer,    DataType::Float,       DataType::Double,
                     DataType::ColorImage, DataType::BinaryImage, DataType::GrayscaleImage};

bool pairs(const Values& inputs)
{
    const DataType left = inputs[0]->getType();
    const DataType right = inputs[1]->getType();
    return left == DataType::GrayscaleImage ? right == DataType::Integer : left == right;
}

const InputGuards guards(category, "Multiply",
                         {Guard::count(2).quietly(), Guard::present(0).quietly(), Guard::present(1).quietly(),
                          Guard::kind(0, operands).quietly(), Guard::that(pairs).quietly(), Guard::intact(0),
                          Guard::intact(1)});

// Components of pixels stand for fractions of 255.
struct Product
{
    template <typename Real>
    Real operator()(Real left, Real right) const
    {
        return left * right;
    }
    int operator()(int left, int right) const
    {
        return static_cast<int>(static_cast<unsigned>(left) * static_cast<unsigned>(right));
    }
    uchar operator()(uchar left, uchar right) const { return static_cast<uchar>(left * right / 255); }
};

struct Intersection
{
    uchar operator()(uchar left, uchar right) const { return left & right; }
};

cv::Mat intersection(const cv::Mat& left, const cv::Mat& right)
{
    if (left.size() == right.size())
        return combinedPixels<Intersection>(left, right);
    cv::Mat result;
    cv::bitwise_and(left, right, result); // sizes that differ are for OpenCV to judge, which throws
    return result;
}

cv::Mat scaled(const cv::Mat& image, int factor)
{
    // Below 0 nothing is left, and from 255 on every pixel but 0 is at the top.
    const auto scale = static_cast<ushort>(std::clamp(factor, 0, 255));
    cv::Mat result = newMatrix(image.size(), image.type());
    forEachPixelRow<const uchar, uchar>(
        [scale](std::size_t pixels, const uchar* in, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i)
                out[i] = static_cast<uchar>(std::min<ushort>(static_cast<ushort>(in[i] * scale), 255));
        },
        image, result);
    return result;
}

} // namespace

Multiply::Multiply() : FilterPrimitive("Multiply")
{
    accept(_addInput("left"), operands);
    accept(_addInput("right"), operands);
    _addOutput("out");
}

Values Multiply::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const DataType kind = inputs[0]->getType();
    if (kind != DataType::GrayscaleImage && kind != DataType::BinaryImage)
        return combine<Product>(inputs, guards);
    const cv::Mat left = dataToCvMat(inputs[0]);
    const cv::Mat result = kind == DataType::GrayscaleImage ? scaled(left, number<int>(inputs[1]))
                                                            : intersection(left, dataToCvMat(inputs[1]));
    return one(cvMatToData(result, DataType::BinaryImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
