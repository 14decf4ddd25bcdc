#include "corvale/data/datamatriximage.h"
#include "corvale/data/truncate.h"
#include "corvale/filters/divisor.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <deque>
#include <stdexcept>
#include <vector>

using namespace support;
using ZR::Corvale::cvMatToData;
using ZR::Corvale::dataToCvMat;

namespace {

const int numbers[] = {INT_MIN, -1, 0, 1, 2, 3, 100, 254, 255, 65534, 65535, 65536, 1 << 24, INT_MAX};

// What a filter makes of a component, and of the one in the same place of a second image or of a number.
struct ComponentFilter
{
    const char* filter;
    std::vector<DataType> kinds;
    char second; // i: an image, n: a number, 0: nothing
    bool keepsOrigin;
    int (*literal)(int left, int right);
};

// clang-format off
const ComponentFilter componentFilters[] = {
    {"Add", {Color, Gray, Binary}, 'i', true, [](int l, int r) { return std::min(l + r, 255); }},
    {"Sub", {Color, Gray, Depth}, 'i', false, [](int l, int r) { return std::abs(l - r); }},
    {"Min", {Color, Gray}, 'i', false, [](int l, int r) { return l < r ? l : r; }},
    {"Max", {Color, Gray}, 'i', false, [](int l, int r) { return l > r ? l : r; }},
    {"Multiply", {Color}, 'i', false, [](int l, int r) { return l * r / 255; }},
    {"Multiply", {Binary}, 'i', true, [](int l, int r) { return l & r; }},
    {"Multiply", {Gray}, 'n', true,
     [](int v, int factor) { return int(std::clamp(1LL * v * factor, 0LL, 255LL)); }},
    {"Threshold", {Gray, Depth}, 'n', true, [](int v, int ceil) { return v > ceil ? 255 : 0; }},
    {"Invert", {Color, Gray}, 0, true, [](int v, int) { return 255 - v; }},
    {"Invert", {Binary}, 0, true, [](int v, int) { return v != 0 ? 0 : 255; }},
};
// clang-format on

TEST(ComponentFilters, EqualTheLiteralEvaluation)
{
    FilterRunner run;
    for (const auto& row : componentFilters)
        for (const DataType kind : row.kinds)
            forEachShape([&](const Shape& shape) {
                SCOPED_TRACE(row.filter);
                const bool two = row.second == 'i';
                const DataType out = row.second == 'n' ? Binary : kind;
                const cv::Mat left = shape.random(matTypeOf(kind));
                for (const int number : numbers) {
                    const cv::Mat right = Shape{shape.size, number % 2 == 0}.random(matTypeOf(kind));
                    Values inputs{imageOf(kind, left), two ? imageOf(kind, right) : value(number)};
                    inputs.resize(row.second == 0 ? 1 : 2);
                    const auto literal = [&](int y, int x, int c) {
                        return row.literal(at(left, y, x, c), two ? at(right, y, x, c) : number);
                    };
                    expectImage(run.only(row.filter, inputs), left.size(), out, row.keepsOrigin, literal);
                }
            });
}

TEST(TwoImages, ThatDoNotMatchAreRefused)
{
    FilterRunner run;
    const Values colors{imageOf(Color, cv::Mat(3, 4, CV_8UC3)), imageOf(Color, cv::Mat(4, 3, CV_8UC3))};
    const Values masks{imageOf(Binary, cv::Mat(3, 4, CV_8UC1)), imageOf(Binary, cv::Mat(4, 3, CV_8UC1))};
    for (const char* filter : {"Sub", "Multiply", "Min", "Max"})
        EXPECT_TRUE(run.refuses(filter, colors));
    for (const char* filter : {"Add", "Multiply", "Mask"})
        EXPECT_THROW(run(filter, masks), cv::Exception); // OpenCV's own
    for (const auto& noMask :
         {imageOf(Depth, cv::Mat(4, 3, CV_16UC1)), colors[1], imageOf(Binary, cv::Mat())})
        EXPECT_TRUE(run.refuses("Mask", {noMask, masks[1]}));
}

TEST(Numbers, CombineLikeWithLikeOnly)
{
    FilterRunner run;
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
    for (const bool truth : {false, true})
        EXPECT_EQ(bool(*run.only("Invert", {value(truth)})), !truth);
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(Mask, KeepsPixelsBitForBitWhereItIsOn)
{
    FilterRunner run;
    for (const DataType kind : {Color, Gray, Label, Depth, Binary, DataType::XYZImage})
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

boost::shared_ptr<Data> gray(int level, cv::Size size = {1, 1})
{
    return imageOf(Gray, cv::Mat(size, CV_8UC1, cv::Scalar(level)));
}

TEST(Accum, EqualsTheLiteralEvaluation)
{
    for (const DataType kind : {Color, Gray, Depth})
        for (const float factor : {0.0f, 0.3f, 0.5f, 1.0f, -1.0f, 3.7f, 1e30f, -1e30f, NAN})
            forEachShape([&](const Shape& shape) {
                FilterRunner run;
                const cv::Mat first = shape.random(matTypeOf(kind)), second = shape.random(matTypeOf(kind));
                ASSERT_EQ(run("Accum", {imageOf(kind, first), value(factor)}), Values(1));
                const int a = ZR::Corvale::truncate<int>(factor * 256.0f);
                const int b = ZR::Corvale::truncate<int>((1.0f - factor) * 256.0f);
                const auto literal = [&](int y, int x, int c) {
                    const auto sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(
                        1LL * at(second, y, x, c) * a + 1LL * at(first, y, x, c) * b));
                    return (sum >> 8) & (kind == Depth ? 0xffff : 0xff);
                };
                const auto average = run.only("Accum", {imageOf(kind, second), value(factor)});
                expectImage(average, first.size(), kind, true, literal);
            });
}

TEST(Accum, KeepsACloneOfItsOwnForEachProcessAndScope)
{
    FilterRunner run;
    const auto input = gray(100), half = value(0.5f);
    for (const char* process : {"p", "process"})
        for (const char* scope : {"s", "scope"})
            EXPECT_EQ(run("Accum", {input, half}, process, scope), Values(1));
    dataToCvMat(input).setTo(0); // the averages must not see this
    const auto average = run("Accum", {gray(200), half}, "p", "s").at(0);
    EXPECT_EQ(dataToCvMat(average).at<uchar>(0), 150);
    EXPECT_EQ(run("Accum", {average, half}, "p", "s").at(0), average); // its own input, and in place
    EXPECT_EQ(dataToCvMat(average).at<uchar>(0), 150);
    // It stays as it is for another size or kind.
    EXPECT_TRUE(run.refuses("Accum", {gray(1, {2, 1}), half}));
    const auto depth = imageOf(Depth, cv::Mat(1, 1, CV_16UC1));
    EXPECT_EQ(dataToCvMat(run.only("Accum", {depth, half})).at<uchar>(0), 100);
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(Divisor, CutsOffTheFractionOfEveryQuotient)
{
    for (unsigned int divisor = 1; divisor < 65536; divisor += 1 + divisor / 64)
        for (unsigned int number = 0; number < 65536; ++number)
            ASSERT_EQ(ZR::Corvale::Filters::Divisor(divisor).quotient(ushort(number)), number / divisor);
}

TEST(SNN, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    const auto expectLiteral = [&](const cv::Mat& image, int size) {
        const int reach = size / 2, side = 2 * std::min(reach, 1000) + 1; // beyond any of these images
        const auto literal = [&](int y, int x, int) {
            if (std::min(y, x) < reach || y >= image.rows - reach || x >= image.cols - reach)
                return 0;
            const int c = at(image, y, x, 0);
            int sum = c;
            for (int dy = 0; dy <= reach; ++dy)
                for (int dx = dy == 0 ? 1 : -reach; dx <= reach; ++dx) {
                    const int a = at(image, y + dy, x + dx, 0), b = at(image, y - dy, x - dx, 0);
                    sum += std::abs(c - a) < std::abs(c - b) ? a : b;
                }
            return sum / ((side * side - 1) / 2 + 1);
        };
        expectImage(run.only("SNN", {imageOf(Gray, image), value(size)}), image.size(), Gray, true, literal);
    };
    forEachShape([&](const Shape& shape) {
        for (const int size : {0, 1, 2, 3, 5, INT_MAX})
            expectLiteral(shape.random(CV_8UC1), size);
    });
    for (const int width : {40, 128 + 22, 300}) // less than a block of pixels, one and several
        for (const int size : {3, 4, 7, 21, 22, 23}) {
            expectLiteral(Shape{{width, 25}, true}.random(CV_8UC1), size);
            expectLiteral(cv::Mat(25, width, CV_8UC1, cv::Scalar(255)), size); // the greatest sums
        }
    EXPECT_TRUE(run("SNN", {gray(1), value(-1)}).empty());
    EXPECT_EQ(run.log.messages(), std::vector<std::string>{" [Invalid Input] -> Dilation -> ..."});
}

TEST(SlidingWindow, EqualsTheLiteralEvaluation)
{
    for (const DataType kind : {Color, Gray, Depth})
        for (const int size : {1, 2, 3, 5, 255, 257})
            forEachShape([&](const Shape& shape) {
                FilterRunner run;
                const int divisor = kind == Depth ? size : size % 256;
                std::deque<cv::Mat> window;
                for (int frame = 0; frame < 7; ++frame) {
                    const cv::Mat image = shape.random(matTypeOf(kind));
                    const auto in = imageOf(kind, image);
                    const auto out = run.only("SlidingWindow", {in, value(size)});
                    if (frame == 0) {
                        EXPECT_EQ(out, in);
                        window.assign(size, image.clone());
                    } else {
                        window.pop_front();
                        window.push_back(image.clone());
                        expectImage(out, image.size(), kind, false, [&](int y, int x, int c) {
                            int sum = 0;
                            for (const cv::Mat& past : window)
                                sum += at(past, y, x, c) / divisor;
                            return sum % (kind == Depth ? 65536 : 256);
                        });
                    }
                    dataToCvMat(out).setTo(77); // reaches neither window nor sums, nor does a change of in
                    dataToCvMat(in).setTo(55);
                }
            });
}

TEST(SlidingWindow, StaysAsItIsWhileKindSizeOrNumberChange)
{
    FilterRunner run;
    const auto mean = [&](const boost::shared_ptr<Data>& in, int size) {
        const Values out = run("SlidingWindow", {in, value(size)});
        return out.empty() ? -1 : int(dataToCvMat(out[0]).at<uchar>(0));
    };
    const auto depth = imageOf(Depth, cv::Mat(1, 1, CV_16UC1));
    for (const auto& [in, size] : {std::pair(gray(1), 256), std::pair(gray(1), -1),
                                   std::pair(gray(1), INT_MAX), std::pair(depth, 65536)})
        EXPECT_TRUE(run.refuses("SlidingWindow", {in, value(size)}));
    EXPECT_EQ(mean(gray(100), 3), 100);
    EXPECT_EQ(mean(gray(200), 3), 33 + 33 + 66);
    EXPECT_TRUE(run.refuses("SlidingWindow", {gray(1, {2, 1}), value(3)}));
    for (const auto& [in, size] : {std::pair(gray(1), 4), std::pair(gray(1), 0), std::pair(depth, 3)})
        EXPECT_EQ(mean(in, size), -1);
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_EQ(mean(gray(0), 3), 33 + 66 + 0);
    run.memory.removeProcess(ZR::Corvale::StringHash("process"));
    EXPECT_EQ(mean(gray(50), 4), 50);
    EXPECT_EQ(mean(gray(50), 4), 4 * 12);
}

TEST(DataConversion, SharesPixelsAndThrowsForWhatIsNoImage)
{
    const cv::Mat distances(2, 3, CV_16UC1);
    const auto depth = imageOf(Depth, distances);
    EXPECT_EQ(dataToCvMat(depth).data, distances.data);
    EXPECT_EQ(dataToCvMat(cvMatToData(distances, Gray, depth)).data, distances.data);
    const auto noImage = testing::ThrowsMessage<std::runtime_error>("Cannot convert Corvale data to cv::Mat");
    const auto noOrigin =
        testing::ThrowsMessage<std::runtime_error>("Cannot convert Corvale Data Corvale Image");
    const auto matrixImage = value(boost::make_shared<ZR::Corvale::Type::MatrixImage>(2, 2));
    const auto hollow = value(boost::shared_ptr<ZR::Corvale::Type::ColorImage>());
    for (const auto& bad : {matrixImage, hollow, value(1), boost::shared_ptr<Data>()}) {
        EXPECT_THAT([&] { dataToCvMat(bad); }, noImage);
        EXPECT_THAT([&] { cvMatToData(distances, DataType::Invalid, bad); }, noOrigin); // which comes first
    }
    for (const DataType type : {DataType::MatrixImage, DataType::Invalid})
        EXPECT_THAT([&] { cvMatToData(distances, type, depth); }, noImage);
}

} // namespace
