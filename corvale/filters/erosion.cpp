#include "corvale/filters/erosion.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/morphology.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.erosion");
const InputGuards guards(category, "Erosion", morphologyGuards());

} // namespace

Erosion::Erosion() : FilterPrimitive("Erosion")
{
    accept(_addInput("in"), morphologyKinds());
    accept(_addInput("size"), {DataType::Integer});
    accept(_addOutput("out"), morphologyKinds());
}

Values Erosion::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat result = eroded(dataToCvMat(inputs[0]), number<int>(inputs[1]));
    return one(cvMatToData(result, inputs[0]->getType(), inputs[0]));
}

} // namespace ZR::Corvale::Filters
