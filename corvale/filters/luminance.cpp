#include "corvale/filters/luminance.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.luminance");
const InputGuards guards(category, "Luminance",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::ColorImage}).quietly(),
                          Guard::intact(0)});

} // namespace

Luminance::Luminance() : FilterPrimitive("Luminance")
{
    accept(_addInput("in"), {DataType::ColorImage});
    accept(_addOutput("out"), {DataType::GrayscaleImage});
}

Values Luminance::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    cv::Mat greys = newMatrix(image.size(), CV_8UC1);
    forEachPixelRow<const uchar, uchar>(
        [](std::size_t pixels, const uchar* colours, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i) {
                const uchar* colour = colours + 3 * i;
                out[i] = static_cast<uchar>((66 * colour[0] + 128 * colour[1] + 25 * colour[2] + 128) >> 8);
            }
        },
        image, greys);
    return one(cvMatToData(greys, DataType::GrayscaleImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
