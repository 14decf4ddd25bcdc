#include "corvale/filters/mask.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.mask");
const Kinds kinds{DataType::ColorImage, DataType::GrayscaleImage, DataType::LabelImage,
                  DataType::DepthImage, DataType::BinaryImage,    DataType::XYZImage};

// A mask has bytes, one for a pixel or one for each of its components, and is not empty beside pixels.
bool masks(const Values& inputs)
{
    const cv::Mat mask = dataToCvMat(inputs[0]);
    const cv::Mat image = dataToCvMat(inputs[1]);
    return mask.depth() == CV_8U && (mask.channels() == 1 || mask.channels() == image.channels()) &&
           (!mask.empty() || image.empty());
}

const InputGuards guards(category, "Mask",
                         {Guard::count(2).quietly(), Guard::present(1).quietly(), Guard::kind(0, kinds),
                          Guard::kind(1, kinds), Guard::intact(0), Guard::intact(1), Guard::that(masks)});

// `Width` components of the image go with one of the mask.
template <typename Component, int Width>
cv::Mat maskedComponents(const cv::Mat& image, const cv::Mat& mask)
{
    cv::Mat result(image.size(), image.type());
    forEachComponentRow<const uchar, const Component, Component>(
        [](std::size_t count, const uchar* mask, const Component* in, Component* out) {
            for (std::size_t i = 0; i < count; ++i)
                for (std::size_t k = Width * i; k < Width * (i + 1); ++k) {
                    const Component component = in[k];
                    out[k] = mask[i] != 0 ? component : Component(0);
                }
        },
        mask, image, result);
    return result;
}

template <typename Component>
cv::Mat maskedPixels(const cv::Mat& image, const cv::Mat& mask)
{
    return image.channels() == mask.channels() ? maskedComponents<Component, 1>(image, mask)
                                               : maskedComponents<Component, 3>(image, mask);
}

cv::Mat masked(const cv::Mat& image, const cv::Mat& mask)
{
    switch (image.depth()) {
    case CV_16U:
        return maskedPixels<ushort>(image, mask);
    case CV_32S:
        return maskedPixels<int>(image, mask);
    case CV_32F:
        return maskedPixels<float>(image, mask);
    default:
        return maskedPixels<uchar>(image, mask);
    }
}

} // namespace

Mask::Mask() : FilterPrimitive("Mask")
{
    accept(_addInput("mask"), {DataType::BinaryImage});
    accept(_addInput("in"), kinds);
    _addOutput("out");
}

Values Mask::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat mask = dataToCvMat(inputs[0]);
    const cv::Mat image = dataToCvMat(inputs[1]);
    cv::Mat result;
    if (mask.size() == image.size())
        result = masked(image, mask);
    else
        image.copyTo(result, mask); // sizes that differ are for OpenCV to judge, which throws
    return one(cvMatToData(result, inputs[1]->getType(), inputs[1]));
}

} // namespace ZR::Corvale::Filters
