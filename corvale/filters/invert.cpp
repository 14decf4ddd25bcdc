#include "corvale/filters/invert.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.invert");
const Kinds kinds{DataType::Boolean, DataType::ColorImage, DataType::GrayscaleImage, DataType::BinaryImage};
const InputGuards guards(category, "Invert",
                         {Guard::count(1).quietly(), Guard::kind(0, kinds).quietly(), Guard::intact(0)});

cv::Mat complement(const cv::Mat& image)
{
    cv::Mat result = newMatrix(image.size(), image.type());
    forEachComponentRow<const uchar, uchar>(
        [](std::size_t components, const uchar* in, uchar* out) {
            for (std::size_t i = 0; i < components; ++i)
                out[i] = static_cast<uchar>(255 - in[i]);
        },
        image, result);
    return result;
}

cv::Mat switched(const cv::Mat& mask)
{
    cv::Mat result = newMatrix(mask.size(), mask.type());
    forEachPixelRow<const uchar, uchar>(
        [](std::size_t pixels, const uchar* in, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i)
                out[i] = in[i] == 0 ? 255 : 0;
        },
        mask, result);
    return result;
}

} // namespace

Invert::Invert() : FilterPrimitive("Invert")
{
    accept(_addInput("in"), kinds);
    _addOutput("out");
}

Values Invert::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const DataType kind = inputs[0]->getType();
    if (kind == DataType::Boolean)
        return one(!number<bool>(inputs[0]));
    const cv::Mat image = dataToCvMat(inputs[0]);
    return one(
        cvMatToData(kind == DataType::BinaryImage ? switched(image) : complement(image), kind, inputs[0]));
}

} // namespace ZR::Corvale::Filters
