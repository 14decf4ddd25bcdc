#include "corvale/filters/otsu.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/levelcounts.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.otsu");
const InputGuards guards(category, "Otsu",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::GrayscaleImage}).quietly(),
                          Guard::intact(0)});

// The level up to which pixels are dark. Counts and sums are exact, and rounded where they are divided.
int separatingLevel(const LevelCounts& counts)
{
    std::uint64_t pixels = 0, sum = 0;
    for (std::size_t level = 0; level < counts.size(); ++level) {
        pixels += counts[level];
        sum += level * counts[level];
    }
    int best = 0;
    float bestVariance = 0.0f;
    std::uint64_t dark = 0, darkSum = 0;
    for (std::size_t level = 0; level < counts.size(); ++level) {
        dark += counts[level];
        darkSum += level * counts[level];
        if (dark == 0)
            continue;
        if (dark == pixels)
            break;
        const auto darkWeight = static_cast<float>(dark);
        const auto brightWeight = static_cast<float>(pixels - dark);
        const float distance =
            static_cast<float>(darkSum) / darkWeight - static_cast<float>(sum - darkSum) / brightWeight;
        const float variance = darkWeight * brightWeight * distance * distance;
        if (variance > bestVariance) {
            bestVariance = variance;
            best = static_cast<int>(level);
        }
    }
    return best;
}

} // namespace

Otsu::Otsu() : FilterPrimitive("Otsu")
{
    accept(_addInput("in"), {DataType::GrayscaleImage});
    accept(_addOutput("out"), {DataType::BinaryImage});
}

Values Otsu::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    const auto level = static_cast<uchar>(separatingLevel(countLevels(image)));
    cv::Mat mask = newMatrix(image.size(), CV_8UC1);
    forEachPixelRow<const uchar, uchar>(
        [level](std::size_t pixels, const uchar* in, uchar* out) {
            for (std::size_t i = 0; i < pixels; ++i)
                out[i] = in[i] > level;
        },
        image, mask);
    return one(cvMatToData(mask, DataType::BinaryImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
