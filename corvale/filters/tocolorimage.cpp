#include "corvale/filters/tocolorimage.h"

#include "corvale/data/dataaudiobuffer.h"
#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <type_traits>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.toColorImage");
const Kinds kinds{DataType::ColorImage,     DataType::BinaryImage, DataType::LabelImage,
                  DataType::GrayscaleImage, DataType::AudioBuffer, DataType::DepthImage,
                  DataType::XYZImage};
const InputGuards guards(category, "ToColorImage",
                         {Guard::count(1).quietly(), Guard::kind(0, kinds).quietly(), Guard::intact(0)});

} // namespace

ToColorImage::ToColorImage() : FilterPrimitive("ToColorImage")
{
    accept(_addInput("in"), kinds);
    accept(_addOutput("out"), {DataType::ColorImage});
}

Values ToColorImage::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const boost::shared_ptr<Data>& in = inputs[0];
    if (in->getType() == DataType::AudioBuffer)
        return one(payload<Type::AudioBuffer>(in)->toColorImage());

    boost::shared_ptr<Data> picture = in;
    visitImageClass(in->getType(), [&](auto imageClass) {
        using Image = typename decltype(imageClass)::type;
        if constexpr (!std::is_same_v<Image, Type::ColorImage>)
            picture = boost::make_shared<Data>(payload<Image>(in)->toColorImage());
    });
    return one(picture);
}

} // namespace ZR::Corvale::Filters
