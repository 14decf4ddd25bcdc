#include "corvale/filters/saturation.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.saturation");
const InputGuards guards(category, "Saturation",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::ColorImage}).quietly(),
                          Guard::intact(0)});

} // namespace

Saturation::Saturation() : FilterPrimitive("Saturation")
{
    accept(_addInput("in"), {DataType::ColorImage});
    accept(_addOutput("out"), {DataType::GrayscaleImage});
}

Values Saturation::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    cv::Mat saturations = newMatrix(image.size(), CV_8UC1);
    forEachPixelRow<const uchar, uchar>(
        [](std::size_t pixels, const uchar* colours, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i) {
                const uchar red = colours[3 * i], green = colours[3 * i + 1], blue = colours[3 * i + 2];
                const uchar greatest = std::max(std::max(red, green), blue);
                const uchar least = std::min(std::min(red, green), blue);
                // A quotient that is no integer is 1 / 255 or more below the next, which rounding to a float
                // does not reach: this is the division of integers, of which there are no vectors.
                const float quotient = static_cast<float>((greatest - least) * 255) /
                                       static_cast<float>(std::max<uchar>(greatest, 1));
                out[i] = static_cast<uchar>(static_cast<int>(quotient));
            }
        },
        image, saturations);
    return one(cvMatToData(saturations, DataType::GrayscaleImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
