#include "corvale/filters/boundingbox.h"

#include "corvale/data/dataregion2.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/regionextent.h"
#include "corvale/filters/regions.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.boundingBox");
const InputGuards guards(category, "BoundingBox",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::LabelImage}).quietly(),
                          Guard::intact(0), countableLabels()});

} // namespace

BoundingBox::BoundingBox() : FilterPrimitive("BoundingBox")
{
    accept(_addInput("in"), {DataType::LabelImage});
    accept(_addOutput("out"), {DataType::Array});
    accept(_addOutput("inputSize"), {DataType::Vector2});
}

Values BoundingBox::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat labels = dataToCvMat(inputs[0]);
    const LabelTable<RegionExtent> regions = measureRegions<RegionExtent>(labels);
    const std::vector<RegionExtent>& extents = regions.entries();
    std::vector<Type::Region2> boxes;
    // The label that equals the number of pixels has no box: only an image of one-pixel regions needs it.
    for (std::size_t label = 1; label < std::min(extents.size(), labels.total()); ++label) {
        const RegionExtent& extent = extents[label];
        if (extent.maxX > extent.minX)
            boxes.emplace_back(extent.minX, extent.minY, extent.maxX, extent.maxY);
    }
    return {boost::make_shared<Data>(valuesOf(boxes)),
            boost::make_shared<Data>(static_cast<float>(labels.cols), static_cast<float>(labels.rows))};
}

} // namespace ZR::Corvale::Filters
