#include "corvale/filters/dilation.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/morphology.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.dilation");
const InputGuards guards(category, "Dilation", morphologyGuards());

} // namespace

Dilation::Dilation() : FilterPrimitive("Dilation")
{
    accept(_addInput("in"), morphologyKinds());
    accept(_addInput("size"), {DataType::Integer});
    accept(_addOutput("out"), morphologyKinds());
}

Values Dilation::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat result = dilated(dataToCvMat(inputs[0]), number<int>(inputs[1]));
    return one(cvMatToData(result, inputs[0]->getType(), inputs[0]));
}

} // namespace ZR::Corvale::Filters
