#include "corvale/filters/histogram.h"

#include "corvale/data/datahistogram.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/levelcounts.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.histogram");
const Kinds kinds{DataType::ColorImage, DataType::GrayscaleImage};
const InputGuards guards(category, "Histogram",
                         {Guard::count(1).quietly(), Guard::kind(0, kinds).quietly(), Guard::intact(0)});

void fillChannel(Type::Histogram& histogram, int channel, const LevelCounts& counts)
{
    for (int level = 0; level < 256; ++level)
        histogram.data(level, channel) = static_cast<float>(counts[level]);
}

} // namespace

Histogram::Histogram() : FilterPrimitive("Histogram")
{
    accept(_addInput("in"), kinds);
    _addOutput("out");
}

Values Histogram::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    const int channels = image.channels();
    const auto histogram = boost::make_shared<Type::Histogram>(256u * channels, channels);
    if (channels == 3) {
        const std::array<LevelCounts, 3> counts = countColourLevels(image);
        for (int channel = 0; channel < 3; ++channel)
            fillChannel(*histogram, channel, counts[channel]);
    } else {
        fillChannel(*histogram, 0, countLevels(image));
    }
    return one(histogram);
}

} // namespace ZR::Corvale::Filters
