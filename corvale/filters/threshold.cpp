#include "corvale/filters/threshold.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>
#include <limits>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.threshold");
const Kinds kinds{DataType::ColorImage, DataType::DepthImage, DataType::GrayscaleImage};
const InputGuards guards(category, "Threshold",
                         {Guard::count(2).quietly(), Guard::kind(0, kinds).quietly(),
                          Guard::kind(1, {DataType::Integer}).quietly(), Guard::intact(0)});

template <typename Level>
void thresholdLevels(const cv::Mat& image, int ceil, cv::Mat& mask)
{
    if (ceil < 0) {
        mask.setTo(255);
        return;
    }
    const Level level = static_cast<Level>(std::min<int>(ceil, std::numeric_limits<Level>::max()));
    forEachPixelRow<const Level, uchar>(
        [level](std::size_t pixels, const Level* in, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i)
                out[i] = in[i] > level ? 255 : 0;
        },
        image, mask);
}

void thresholdColours(const cv::Mat& image, int ceil, cv::Mat& mask)
{
    // No sum of three components is above that of three times 255. A negative level counts as beyond it.
    const auto level = static_cast<ushort>(3 * (ceil < 0 ? 255 : std::min(ceil, 255)));
    forEachPixelRow<const uchar, uchar>(
        [level](std::size_t pixels, const uchar* colours, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i) {
                const uchar* colour = colours + 3 * i;
                const int beyond = level - (colour[0] + colour[1] + colour[2]);
                out[i] = static_cast<uchar>(static_cast<ushort>(beyond) >> 15); // its sign
            }
        },
        image, mask);
}

} // namespace

Threshold::Threshold() : FilterPrimitive("Threshold")
{
    accept(_addInput("in"), kinds);
    accept(_addInput("ceil"), {DataType::Integer});
    accept(_addOutput("out"), {DataType::BinaryImage});
}

Values Threshold::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    const int ceil = number<int>(inputs[1]);
    cv::Mat mask = newMatrix(image.size(), CV_8UC1);
    if (image.channels() == 3)
        thresholdColours(image, ceil, mask);
    else if (image.depth() == CV_16U)
        thresholdLevels<ushort>(image, ceil, mask);
    else
        thresholdLevels<uchar>(image, ceil, mask);
    return one(cvMatToData(mask, DataType::BinaryImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
