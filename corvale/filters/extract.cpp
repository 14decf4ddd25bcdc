#include "corvale/filters/extract.h"

#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.extract");

bool hasRegion(const Values& inputs)
{
    return static_cast<Type::Region2*>(*inputs[1]) != nullptr;
}

// An image of no pixels cannot be told from no image, and out of corners in the wrong order none is cut.
bool coversPixels(const Values& inputs)
{
    const Type::Region2& region = *payload<Type::Region2>(inputs[1]);
    const cv::Mat& image = payload<Type::ColorImage>(inputs[0])->mat;
    const cv::Range columns = Type::covered(region.start.x(), region.end.x(), image.cols);
    const cv::Range rows = Type::covered(region.start.y(), region.end.y(), image.rows);
    return columns.start < columns.end && rows.start < rows.end;
}

const InputGuards guards(category, "Extract",
                         {Guard::count(2).quietly(), Guard::kind(0, {DataType::ColorImage}).quietly(),
                          Guard::present(1).quietly(), Guard::that(hasRegion).quietly(), Guard::intact(0),
                          Guard::that(coversPixels)});

} // namespace

Extract::Extract() : FilterPrimitive("Extract")
{
    accept(_addInput("in"), {DataType::ColorImage});
    accept(_addInput("region"), {DataType::Region2});
    accept(_addOutput("out"), {DataType::ColorImage});
}

Values Extract::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const Type::Region2& region = *payload<Type::Region2>(inputs[1]);
    return one(payload<Type::ColorImage>(inputs[0])->extract(region));
}

} // namespace ZR::Corvale::Filters
