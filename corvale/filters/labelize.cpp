#include "corvale/filters/labelize.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/labelling.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.labelize");
const Kinds kinds{DataType::BinaryImage, DataType::DepthImage, DataType::GrayscaleImage};
const InputGuards
    guards(category, "Labelize",
           {Guard::count(2), Guard::kind(0, kinds), Guard::intact(0),
            Guard::that([](const Values& inputs) { return Labelling::canCount(dataToCvMat(inputs[0])); })});

} // namespace

Labelize::Labelize() : FilterPrimitive("Labelize")
{
    accept(_addInput("in"), kinds);
    const boost::shared_ptr<Port> tolerance = _addInput("tolerance");
    accept(tolerance, {DataType::Integer});
    tolerance->setOptional(true);
    accept(_addOutput("out"), {DataType::LabelImage});
}

Values Labelize::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    if (image.empty())
        return {};
    Labelling& labelling = Labelling::ofThread();
    labelling.scan(image, inputs[1] ? number<int>(inputs[1]) : 0);
    return one(cvMatToData(labelling.unifyLabels(), DataType::LabelImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
