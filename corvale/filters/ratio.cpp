#include "corvale/filters/ratio.h"

#include "corvale/data/dataregion2.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/regionextent.h"
#include "corvale/filters/regions.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.ratio");
const Kinds kinds{DataType::LabelImage, DataType::Array};
const InputGuards guards(category, "Ratio",
                         {Guard::present(0).quietly(), Guard::kind(1, {DataType::Float}).quietly(),
                          Guard::kind(2, {DataType::Float}).quietly(), Guard::kind(0, kinds).quietly(),
                          Guard::intact(0), countableLabels()});

float ratio(const RegionExtent& extent)
{
    if (extent.maxX <= extent.minX || extent.maxY == extent.minY)
        return 0.0f;
    return static_cast<float>(extent.maxX - extent.minX) / static_cast<float>(extent.maxY - extent.minY);
}

template <typename Suits>
Values suitingBoxes(const Values& elements, Suits suits)
{
    Values boxes;
    for (const boost::shared_ptr<Data>& element : elements) {
        const Type::Region2* box = element ? static_cast<Type::Region2*>(*element) : nullptr;
        if (!box)
            continue;
        const Type::Vector2 size = box->end - box->start;
        if (size.y() != 0.0f && suits(size.x() / size.y()))
            boxes.push_back(element);
    }
    return boxes;
}

} // namespace

Ratio::Ratio() : FilterPrimitive("Ratio")
{
    accept(_addInput("in"), kinds);
    accept(_addInput("min"), {DataType::Float});
    accept(_addInput("max"), {DataType::Float});
    _addOutput("out");
}

Values Ratio::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const float min = number<float>(inputs[1]);
    const float max = number<float>(inputs[2]);
    const auto suits = [min, max](float ratio) { return ratio >= min && ratio <= max; };
    if (inputs[0]->getType() == DataType::Array)
        return one(suitingBoxes(*payload<Values>(inputs[0]), suits));
    const cv::Mat kept = selectRegions<RegionExtent>(
        dataToCvMat(inputs[0]), [suits](const RegionExtent& extent) { return suits(ratio(extent)); });
    return one(cvMatToData(kept, DataType::LabelImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
