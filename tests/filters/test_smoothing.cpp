#include "corvale/filters/divisor.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <climits>
#include <cstdlib>
#include <deque>

using namespace support;
using ZR::Corvale::dataToCvMat;

namespace {

constexpr DataType Color = DataType::ColorImage;
constexpr DataType Gray = DataType::GrayscaleImage;
constexpr DataType Depth = DataType::DepthImage;

TEST(Divisor, CutsOffTheFractionOfEveryQuotient)
{
    for (const unsigned int step : {1u, 251u}) // all small divisors, and some of any size
        for (unsigned int divisor = 1; divisor < 300 * step && divisor < 65536; divisor += step)
            for (unsigned int number = 0; number < 65536; ++number)
                ASSERT_EQ(ZR::Corvale::Filters::Divisor(divisor).quotient(ushort(number)), number / divisor);
}

int literalSnn(const cv::Mat& image, int y, int x, int side)
{
    const int reach = (side - 1) / 2, c = at(image, y, x, 0);
    if (y < reach || x < reach || y >= image.rows - reach || x >= image.cols - reach)
        return 0;
    int sum = c;
    for (int dy = 0; dy <= reach; ++dy)
        for (int dx = dy == 0 ? 1 : -reach; dx <= reach; ++dx) {
            const int a = at(image, y + dy, x + dx, 0), b = at(image, y - dy, x - dx, 0);
            sum += std::abs(c - a) < std::abs(c - b) ? a : b;
        }
    return sum / ((side * side - 1) / 2 + 1);
}

TEST(SNN, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    const auto expectLiteral = [&](const cv::Mat& image, int size) {
        SCOPED_TRACE(size);
        const int side = size % 2 == 0 ? size + 1 : std::min(size, 1001); // any above the image's, above all
        expectImage(run.only("SNN", {imageOf(Gray, image), value(size)}), image.size(), Gray, true,
                    [&](int y, int x, int) { return literalSnn(image, y, x, side); });
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
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_TRUE(run("SNN", {imageOf(Color, cv::Mat(1, 1, CV_8UC3)), value(3)}).empty());
    EXPECT_TRUE(run("SNN", {imageOf(Gray, cv::Mat(1, 1, CV_8UC1)), value(-1)}).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.snn"),
              std::vector<std::string>(2, " [Invalid Input] -> Dilation -> ..."));
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

boost::shared_ptr<Data> gray(int level, cv::Size size = {1, 1})
{
    return imageOf(Gray, cv::Mat(size, CV_8UC1, cv::Scalar(level)));
}

TEST(SlidingWindow, GivesNothingWhileKindSizeOrNumberChange)
{
    FilterRunner run;
    const auto mean = [&](const boost::shared_ptr<Data>& in, int size, const std::string& scope = "scope") {
        const Values out = run("SlidingWindow", {in, value(size)}, "process", scope);
        return out.empty() ? -1 : int(dataToCvMat(out[0]).at<uchar>(0));
    };
    EXPECT_EQ(mean(gray(100), 0), -1);
    EXPECT_EQ(mean(gray(100), 3), 100);
    EXPECT_EQ(mean(gray(200), 3), 33 + 33 + 66);
    EXPECT_EQ(mean(gray(9), 3, "another"), 9);
    EXPECT_EQ(mean(gray(1), 4), -1);
    EXPECT_EQ(mean(imageOf(Depth, cv::Mat(1, 1, CV_16UC1)), 3), -1);
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_EQ(mean(gray(1, {2, 1}), 3), -1);
    EXPECT_EQ(run.log.count(), 1u);

    using ZR::Corvale::StringHash; // all this has left the window as it was, the oldest first
    const Values window = *run.memory.getData(StringHash("process"), StringHash("scope"));
    std::vector<int> levels;
    for (const auto& frame : window)
        levels.push_back(dataToCvMat(frame).at<uchar>(0));
    EXPECT_EQ(levels, (std::vector<int>{100, 100, 200}));
    EXPECT_EQ(mean(gray(0), 3), 33 + 66);
    EXPECT_EQ(levels.back(), int(dataToCvMat(window.back()).at<uchar>(0)));
    run.memory.removeProcess(StringHash("process"));
    EXPECT_EQ(mean(gray(50), 4), 50);
    EXPECT_EQ(mean(gray(50), 4), 4 * 12);
}

TEST(SlidingWindow, RefusesWhatCannotDivideAndOtherKinds)
{
    FilterRunner run;
    const auto depth = imageOf(Depth, cv::Mat(1, 1, CV_16UC1));
    const auto binary = imageOf(DataType::BinaryImage, cv::Mat(1, 1, CV_8UC1));
    for (const Values& bad : {Values{gray(1), value(256)},
                              {gray(1), value(-1)},
                              {gray(1), value(INT_MIN)},
                              {depth, value(65536)},
                              {depth, value(-65535)},
                              {binary, value(2)}})
        EXPECT_TRUE(run("SlidingWindow", bad).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.slidingwindow"),
              std::vector<std::string>(6, " [Invalid Input] -> SlidingWindow -> ..."));
    EXPECT_EQ(run.only("SlidingWindow", {depth, value(256)}), depth); // no refusal left anything behind
}

} // namespace
