#include "corvale/filters/mask.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <cstdint>
#include <cstring>
#include <limits>

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

// With each byte of the mask go `Width` words of the image, kept or cleared as bit patterns.
template <typename Word, int Width>
cv::Mat maskedWords(const cv::Mat& image, const cv::Mat& mask)
{
    cv::Mat result = newMatrix(image.size(), image.type());
    forEachComponentRow<const uchar, const uchar, uchar>(
        [](std::size_t count, const uchar* mask, const uchar* in, uchar* out) {
            for (std::size_t i = 0; i < count; ++i) {
                const Word keep = mask[i] != 0 ? std::numeric_limits<Word>::max() : 0;
                for (std::size_t k = 0; k < Width; ++k) {
                    const std::size_t place = (i * Width + k) * sizeof(Word);
                    Word word;
                    std::memcpy(&word, in + place, sizeof word);
                    word &= keep;
                    std::memcpy(out + place, &word, sizeof word);
                }
            }
        },
        mask, image, result);
    return result;
}

cv::Mat masked(const cv::Mat& image, const cv::Mat& mask)
{
    switch (image.elemSize() / static_cast<std::size_t>(mask.channels())) {
    case 1:
        return maskedWords<std::uint8_t, 1>(image, mask);
    case 2:
        return maskedWords<std::uint16_t, 1>(image, mask);
    case 3:
        return maskedWords<std::uint8_t, 3>(image, mask);
    case 4:
        return maskedWords<std::uint32_t, 1>(image, mask);
    default:
        return maskedWords<std::uint32_t, 3>(image, mask);
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
