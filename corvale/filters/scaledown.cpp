#include "corvale/filters/scaledown.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/vectorised.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <cstring>

#if defined(CORVALE_AVX2)
#include <immintrin.h>
#endif

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.scaleDown");
const Kinds kinds{DataType::ColorImage, DataType::BinaryImage, DataType::DepthImage, DataType::GrayscaleImage,
                  DataType::LabelImage};
const InputGuards factorGuards(category, "ScaleDown",
                               {Guard::count(2).quietly(), Guard::kind(1, {DataType::Integer}).quietly()});
const InputGuards imageGuards(category, "ScaleDown", {Guard::kind(0, kinds), Guard::intact(0)});

template <typename Pixel>
void halveRow(const Pixel* in, std::size_t pixels, Pixel* out)
{
    for (std::size_t i = 0; i < pixels; ++i)
        out[i] = in[2 * i];
}

#if defined(CORVALE_AVX2)
// Takes three pixels at a time and leaves a few, as it writes 16 bytes each time; gives how many it took.
// Compilers find no such permutation for pixels of three bytes.
CORVALE_AVX2 std::size_t halveMostColours(const uchar* in, std::size_t pixels, uchar* out)
{
    const __m128i everySecond = _mm_setr_epi8(0, 1, 2, 6, 7, 8, 12, 13, 14, -1, -1, -1, -1, -1, -1, -1);
    std::size_t taken = 0;
    for (; taken + 6 <= pixels; taken += 3, in += 18, out += 9) {
        const __m128i six = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(six, everySecond));
    }
    return taken;
}
#endif

// Four bytes are copied faster than three. The next pixel takes the place of the fourth.
template <InstructionSet Set>
void halveColours(Instructions<Set>, const uchar* in, std::size_t pixels, uchar* out)
{
#if defined(CORVALE_AVX2)
    if constexpr (Set != InstructionSet::Baseline) {
        const std::size_t taken = halveMostColours(in, pixels, out);
        pixels -= taken;
        in += 6 * taken;
        out += 3 * taken;
    }
#endif
    for (; pixels > 1; --pixels, in += 6, out += 3)
        std::memcpy(out, in, 4);
    std::memcpy(out, in, 3);
}

// Every second pixel of every second row, for which OpenCV would look up each place.
cv::Mat halved(const cv::Mat& image)
{
    cv::Mat result = newMatrix({image.cols / 2, image.rows / 2}, image.type());
    const auto halve = [](auto instructions, const cv::Mat* image, cv::Mat* result) {
        const std::size_t pixels = static_cast<std::size_t>(result->cols);
        for (int y = 0; y < result->rows; ++y)
            switch (image->elemSize()) {
            case 1:
                halveRow(image->ptr<uchar>(2 * y), pixels, result->ptr<uchar>(y));
                break;
            case 2:
                halveRow(image->ptr<ushort>(2 * y), pixels, result->ptr<ushort>(y));
                break;
            case 3:
                halveColours(instructions, image->ptr(2 * y), pixels, result->ptr(y));
                break;
            default:
                halveRow(image->ptr<int>(2 * y), pixels, result->ptr<int>(y));
            }
    };
    runForInstructions(halve, &image, &result);
    return result;
}

boost::shared_ptr<Data> scaledDown(const boost::shared_ptr<Data>& image, int factor)
{
    boost::shared_ptr<Data> result;
    visitImageClass(image->getType(), [&](auto imageClass) {
        using Image = typename decltype(imageClass)::type;
        result = boost::make_shared<Data>(payload<Image>(image)->scaleDown(factor));
    });
    return result;
}

} // namespace

ScaleDown::ScaleDown() : FilterPrimitive("ScaleDown")
{
    accept(_addInput("in"), kinds);
    accept(_addInput("factor"), {DataType::Integer});
    _addOutput("out");
}

Values ScaleDown::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!factorGuards.admit(inputs))
        return {};
    const int factor = number<int>(inputs[1]);
    if (factor < 1)
        return one(inputs[0]);
    if (!imageGuards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    if (factor > image.rows || factor > image.cols)
        return imageGuards.refuse();
    if (factor == 2 && image.rows % 2 == 0 && image.cols % 2 == 0)
        return one(cvMatToData(halved(image), inputs[0]->getType(), inputs[0]));
    return one(scaledDown(inputs[0], factor));
}

} // namespace ZR::Corvale::Filters
