#include "corvale/data/dataaudiobuffer.h"
#include "corvale/data/datahistogram.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <climits>
#include <cmath>

using namespace support;
using namespace ZR::Corvale;

namespace {

using support::Color; // not the class

int literalHue(const cv::Mat& image, int row, int column, long long color)
{
    const int red = at(image, row, column, 0), green = at(image, row, column, 1),
              blue = at(image, row, column, 2);
    const float x = static_cast<float>(2 * red - green - blue);
    const float y = 1.73f * static_cast<float>(green - blue);
    const int turned = static_cast<int>(std::atan2(double(y), double(x)) / double(6.29f) * 360.0);
    long long angle = (turned - color) % 360;
    angle += angle < 0 ? 360 : 0;
    return static_cast<int>(255 - (angle > 180 ? 360 - angle : angle) * 255 / 360);
}

TEST(Colours, TurnGreyOrOnByTheLiteralEvaluation)
{
    FilterRunner run;
    const auto test = [&](const cv::Mat& image, const std::vector<int>& numbers) {
        const auto in = imageOf(Color, image);
        expectImage(run.only("Saturation", {in}), image.size(), Gray, true, [&](int y, int x, int) {
            const int a = at(image, y, x, 0), b = at(image, y, x, 1), c = at(image, y, x, 2);
            const int greatest = std::max({a, b, c});
            return greatest == 0 ? 0 : (greatest - std::min({a, b, c})) * 255 / greatest;
        });
        const auto weighted = [&](int y, int x, int red, int green, int blue) {
            return red * at(image, y, x, 0) + green * at(image, y, x, 1) + blue * at(image, y, x, 2);
        };
        expectImage(run.only("Luminance", {in}), image.size(), Gray, true,
                    [&](int y, int x, int) { return (weighted(y, x, 66, 128, 25) + 128) >> 8; });
        for (const int number : numbers) {
            expectImage(run.only("Hue", {in, value(number)}), image.size(), Gray, true,
                        [&](int y, int x, int) { return literalHue(image, y, x, number); });
            expectImage(
                run.only("Threshold", {in, value(number)}), image.size(), Binary, true,
                [&](int y, int x, int) { return number >= 0 && weighted(y, x, 1, 1, 1) > 3LL * number; });
        }
    };
    cv::Mat differences(0, 1, CV_8UC3); // all that there are between components
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b)
            for (const cv::Vec3b& colour : {cv::Vec3b(0, a, b), cv::Vec3b(a, 0, b), cv::Vec3b(a, b, 0)})
                differences.push_back(colour);
    test(differences, {0, 77});
    test(cv::Mat(1, 2, CV_8UC3, cv::Scalar(9, 2, 4)), {INT_MIN, 65535, 1 << 24, INT_MAX});
    forEachShape([&](const Shape& shape) {
        test(shape.random(CV_8UC3),
             {-1000, -181, -180, -1, 0, 1, 2, 100, 179, 180, 181, 254, 255, 359, 360, 361});
    });
}

std::vector<long long> literalCounts(const cv::Mat& image, int channel)
{
    std::vector<long long> counts(256);
    for (int y = 0; y < image.rows; ++y)
        for (int x = 0; x < image.cols; ++x)
            ++counts[at(image, y, x, channel)];
    return counts;
}

int literalOtsu(const std::vector<long long>& counts)
{
    float best = 0.0f;
    int threshold = 0;
    for (int t = 0; t < 256; ++t) {
        long long pixels[2] = {}, sums[2] = {}; // at or below the level, and above
        for (int level = 0; level < 256; ++level) {
            pixels[level > t] += counts[level];
            sums[level > t] += level * counts[level];
        }
        if (pixels[0] == 0 || pixels[1] == 0)
            continue;
        const float wB = float(pixels[0]), wF = float(pixels[1]);
        const float mB = float(sums[0]) / wB, mF = float(sums[1]) / wF;
        const float variance = wB * wF * (mB - mF) * (mB - mF);
        if (variance > best)
            threshold = t;
        best = std::max(best, variance);
    }
    return threshold;
}

TEST(OtsuAndHistogram, EqualTheLiteralEvaluation)
{
    FilterRunner run;
    forEachShape([&](const Shape& shape) {
        const cv::Mat constant(shape.size, CV_8UC1, cv::Scalar(7));
        for (const cv::Mat& image : {shape.random(CV_8UC1), constant, shape.random(CV_8UC3)}) {
            const bool gray = image.channels() == 1;
            const auto in = imageOf(gray ? Gray : Color, image);
            const auto out = run.only("Histogram", {in});
            const Type::Histogram* histogram = *out;
            ASSERT_EQ(histogram->getSize(), 256u * image.channels());
            ASSERT_EQ(int(histogram->getChannels()), image.channels());
            for (int channel = 0; channel < image.channels(); ++channel) {
                const std::vector<long long> counts = literalCounts(image, channel);
                for (int level = 0; level < 256; ++level)
                    ASSERT_EQ(histogram->data(level, channel), counts[level]);
            }
            const int threshold = literalOtsu(literalCounts(image, 0));
            if (gray)
                expectImage(run.only("Otsu", {in}), image.size(), Binary, true,
                            [&](int y, int x, int) { return at(image, y, x, 0) > threshold; });
        }
    });
}

TEST(ToColorImage, GivesWhatTheValueMakesOfItself)
{
    FilterRunner run;
    const auto color = imageOf(Color, cv::Mat(2, 3, CV_8UC3));
    EXPECT_EQ(run.only("ToColorImage", {color}), color);
    for (const DataType kind : {Binary, Label, Gray, Depth, DataType::XYZImage})
        Filters::visitImageClass(kind, [&](auto imageClass) {
            using Image = typename decltype(imageClass)::type;
            const auto in = imageOf(kind, Shape{{7, 3}, true}.random(matTypeOf(kind)));
            if constexpr (!std::is_same_v<Image, Type::ColorImage>) {
                const auto picture = Filters::payload<Image>(in)->toColorImage();
                expectImage(run.only("ToColorImage", {in}), {7, 3}, Color, false,
                            [&](int y, int x, int c) { return at(picture->mat, y, x, c); });
            }
        });
    const auto audio = boost::make_shared<Type::AudioBuffer>(4, 2, 8000, Type::Time(1));
    EXPECT_EQ(dataToCvMat(run.only("ToColorImage", {value(audio)})).size(), cv::Size(320, 240));
}

} // namespace
