#include "corvale/filters/density.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/regions.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <cstdint>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.density");
const InputGuards guards(category, "Density",
                         {Guard::present(0).quietly(), Guard::kind(1, {DataType::Integer}).quietly(),
                          Guard::kind(2, {DataType::Integer}).quietly(),
                          Guard::kind(0, {DataType::LabelImage}).quietly(), Guard::intact(0)});

struct PixelCount
{
    void addRun(int, int begin, int end) { pixels += end - begin; }

    std::int64_t pixels = 0;
};

} // namespace

Density::Density() : FilterPrimitive("Density")
{
    accept(_addInput("in"), {DataType::LabelImage});
    accept(_addInput("min"), {DataType::Integer});
    accept(_addInput("max"), {DataType::Integer});
    accept(_addOutput("out"), {DataType::LabelImage});
}

Values Density::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat labels = dataToCvMat(inputs[0]);
    const std::int64_t min = number<int>(inputs[1]);
    const std::int64_t max = number<int>(inputs[2]);
    const cv::Mat kept = selectRegions<PixelCount>(labels, [min, max](const PixelCount& region) {
        return region.pixels >= min && region.pixels <= max;
    });
    return one(cvMatToData(kept, DataType::LabelImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
