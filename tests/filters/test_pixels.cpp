#include "filters/filterrunner.h"
#include "filters/images.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

using namespace support;
using ZR::Corvale::dataToCvMat;

namespace {

constexpr DataType Color = DataType::ColorImage;
constexpr DataType Gray = DataType::GrayscaleImage;
constexpr DataType Binary = DataType::BinaryImage;
constexpr DataType Depth = DataType::DepthImage;

// Runs a filter and expects an image of that kind with components `literal(y, x, component)`.
template <typename Literal>
void expectImage(FilterRunner& run, const char* filter, const Values& inputs, cv::Size size, DataType kind,
                 bool withOrigin, Literal literal)
{
    SCOPED_TRACE(filter);
    const auto result = run.only(filter, inputs);
    EXPECT_EQ(result->getType(), kind);
    EXPECT_EQ(hasOrigin(result), withOrigin);
    expectComponents(dataToCvMat(result), size, matTypeOf(kind), literal);
}

TEST(TwoImages, AreCombinedAsByTheLiteralEvaluation)
{
    const struct
    {
        const char* filter;
        std::vector<DataType> kinds;
        int (*literal)(int left, int right);
        bool keepsOrigin;
    } rows[] = {
        {"Add", {Color, Gray, Binary}, [](int l, int r) { return std::min(l + r, 255); }, true},
        {"Sub", {Color, Gray, Depth}, [](int l, int r) { return std::abs(l - r); }, false},
        {"Multiply", {Color}, [](int l, int r) { return l * r / 255; }, false},
        {"Multiply", {Binary}, [](int l, int r) { return l & r; }, true},
        {"Min", {Color, Gray}, [](int l, int r) { return std::min(l, r); }, false},
        {"Max", {Color, Gray}, [](int l, int r) { return std::max(l, r); }, false},
    };
    cv::Mat pairsLeft(256, 768, CV_8UC1), pairsRight(256, 768, CV_8UC1); // every pair of bytes
    for (int i = 0; i < 256; ++i) {
        pairsLeft.row(i).setTo(i);
        for (int x = i; x < 768; x += 256)
            pairsRight.col(x).setTo(i);
    }
    FilterRunner run;
    for (const auto& row : rows)
        for (const DataType kind : row.kinds) {
            const auto check = [&](const cv::Mat& left, const cv::Mat& right) {
                const Values inputs{imageOf(kind, left), imageOf(kind, right)};
                expectImage(
                    run, row.filter, inputs, left.size(), kind, row.keepsOrigin,
                    [&](int y, int x, int c) { return row.literal(at(left, y, x, c), at(right, y, x, c)); });
            };
            const int type = matTypeOf(kind);
            if (kind != Depth)
                check(pairsLeft.reshape(CV_MAT_CN(type)), pairsRight.reshape(CV_MAT_CN(type)));
            forEachShape([&](const Shape& shape) {
                const cv::Mat left = shape.random(type);
                check(left, shape.random(type));
                check(left, Shape{shape.size, false}.random(type));
            });
        }
}

TEST(TwoImages, OfDifferentSizeAreRefused)
{
    FilterRunner run;
    const auto pair = [](DataType kind) {
        const int type = matTypeOf(kind);
        return Values{imageOf(kind, cv::Mat(3, 4, type)), imageOf(kind, cv::Mat(4, 3, type))};
    };
    std::vector<std::string> lines;
    for (const std::string filter : {"Sub", "Multiply", "Min", "Max"}) {
        EXPECT_TRUE(run(filter, pair(Color)).empty());
        lines.push_back(" [Invalid Input] -> " + filter + " -> ...");
    }
    EXPECT_THROW(run("Add", pair(Gray)), cv::Exception);
    EXPECT_THROW(run("Multiply", pair(Binary)), cv::Exception);
    EXPECT_THROW(run("Mask", pair(Binary)), cv::Exception);
    EXPECT_EQ(run.log.messages(rk::log::Error), lines);
}

TEST(Numbers, CombineLikeWithLikeOnly)
{
    FilterRunner run;
    EXPECT_EQ(int(*run.only("Add", {value(2), value(5)})), 7);
    EXPECT_EQ(int(*run.only("Add", {value(INT_MAX), value(1)})), INT_MIN);
    EXPECT_EQ(int(*run.only("Sub", {value(INT_MIN), value(1)})), INT_MAX);
    EXPECT_EQ(int(*run.only("Multiply", {value(1 << 30), value(6)})), INT_MIN);
    EXPECT_EQ(float(*run.only("Sub", {value(0.5f), value(2.0f)})), -1.5f);
    EXPECT_EQ(run.only("Multiply", {value(0.5f), value(2.0f)})->getType(), DataType::Float);
    EXPECT_EQ(double(*run.only("Max", {value(0.5), value(2.0)})), 2.0);
    EXPECT_EQ(float(*run.only("Min", {value(NAN), value(2.0f)})), 2.0f);
    EXPECT_TRUE(std::isnan(float(*run.only("Min", {value(2.0f), value(NAN)}))));
    EXPECT_TRUE(std::signbit(double(*run.only("Max", {value(0.0), value(-0.0)})))); // a tie is for right
    const auto gray = imageOf(Gray, cv::Mat(1, 1, CV_8UC1));
    for (const char* filter : {"Add", "Sub", "Multiply", "Min", "Max"})
        for (const Values& pair :
             {Values{value(2), value(1.5f)}, {value(2.0), value(1.5f)}, {value(2), gray}})
            EXPECT_TRUE(run(filter, pair).empty());
    EXPECT_TRUE(run("Multiply", {gray, gray}).empty());
    EXPECT_EQ(run.log.count(), 0u);
}

const int numbers[] = {INT_MIN, -1, 0, 1, 2, 3, 100, 254, 255, 65534, 65535, 65536, 1 << 24, INT_MAX};

TEST(OneImage, IsChangedAsByTheLiteralEvaluation)
{
    const struct
    {
        const char* filter;
        DataType in;
        DataType out;
        int (*literal)(int component, int number);
    } rows[] = {
        {"Invert", Color, Color, [](int v, int) { return 255 - v; }},
        {"Invert", Gray, Gray, [](int v, int) { return 255 - v; }},
        {"Invert", Binary, Binary, [](int v, int) { return v != 0 ? 0 : 255; }},
        {"Threshold", Gray, Binary, [](int v, int ceil) { return v > ceil ? 255 : 0; }},
        {"Threshold", Depth, Binary, [](int v, int ceil) { return v > ceil ? 255 : 0; }},
        {"Multiply", Gray, Binary, [](int v, int by) { return int(std::clamp(1LL * v * by, 0LL, 255LL)); }},
    };
    FilterRunner run;
    for (const auto& row : rows)
        forEachShape([&](const Shape& shape) {
            const cv::Mat image = shape.random(matTypeOf(row.in));
            for (const int number : numbers) {
                Values inputs{imageOf(row.in, image), value(number)};
                inputs.resize(run.filters[row.filter]->getInputs().size());
                expectImage(run, row.filter, inputs, image.size(), row.out, true,
                            [&](int y, int x, int c) { return row.literal(at(image, y, x, c), number); });
            }
        });
    EXPECT_FALSE(bool(*run.only("Invert", {value(true)})));
    EXPECT_TRUE(bool(*run.only("Invert", {value(false)})));
}

TEST(Colours, BecomeGreyOrOnAsByTheLiteralEvaluation)
{
    FilterRunner run;
    forEachShape([&](const Shape& shape) {
        const cv::Mat image = shape.random(CV_8UC3);
        const auto colours = imageOf(Color, image);
        expectImage(run, "Luminance", {colours}, image.size(), Gray, true, [&](int y, int x, int) {
            return (66 * at(image, y, x, 0) + 128 * at(image, y, x, 1) + 25 * at(image, y, x, 2) + 128) >> 8;
        });
        for (const int ceil : numbers)
            expectImage(run, "Threshold", {colours, value(ceil)}, image.size(), Binary, true,
                        [&](int y, int x, int) {
                            const int sum = at(image, y, x, 0) + at(image, y, x, 1) + at(image, y, x, 2);
                            return ceil >= 0 && sum > 3LL * ceil ? 1 : 0;
                        });
    });
}

TEST(Mask, KeepsPixelsBitForBitWhereItIsOn)
{
    FilterRunner run;
    for (const DataType kind : {Color, Gray, DataType::LabelImage, Depth, Binary, DataType::XYZImage})
        for (const DataType maskKind : {Binary, CV_MAT_CN(matTypeOf(kind)) == 3 ? Color : Gray})
            forEachShape([&](const Shape& shape) {
                cv::Mat image = shape.random(matTypeOf(kind));
                if (!image.empty())
                    std::memset(image.data, -1, image.elemSize()); // among floats not a number
                const cv::Mat mask = shape.random(matTypeOf(maskKind));
                const auto result = run.only("Mask", {imageOf(maskKind, mask), imageOf(kind, image)});
                EXPECT_EQ(result->getType(), kind);
                EXPECT_TRUE(hasOrigin(result));
                const cv::Mat kept = dataToCvMat(result);
                ASSERT_EQ(kept.size(), image.size());
                const int bytes = int(image.elemSize()) / mask.channels(); // for one of the mask
                for (int y = 0; y < kept.rows; ++y)
                    for (int i = 0; i < int(image.elemSize()) * kept.cols; ++i)
                        ASSERT_EQ(kept.ptr(y)[i], mask.ptr(y)[i / bytes] != 0 ? image.ptr(y)[i] : 0);
            });
}

TEST(Mask, OfNoBytesForThePixelsIsRefused)
{
    FilterRunner run;
    const auto gray = imageOf(Gray, cv::Mat(2, 2, CV_8UC1));
    const auto depth = imageOf(Depth, cv::Mat(2, 2, CV_16UC1)),
               color = imageOf(Color, cv::Mat(2, 2, CV_8UC3));
    for (const auto& mask : {depth, color, imageOf(Binary, cv::Mat())})
        EXPECT_TRUE(run("Mask", {mask, gray}).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.mask"),
              std::vector<std::string>(3, " [Invalid Input] -> Mask -> ..."));
}

} // namespace
