#include "filters/filterrunner.h"
#include "filters/images.h"

#include "corvale/data/truncate.h"

#include <cmath>
#include <cstdint>

using namespace support;
using ZR::Corvale::dataToCvMat;

namespace {

boost::shared_ptr<Data> gray(int level, cv::Size size = {1, 1})
{
    return imageOf(DataType::GrayscaleImage, cv::Mat(size, CV_8UC1, cv::Scalar(level)));
}

TEST(Accum, EqualsTheLiteralEvaluation)
{
    for (const DataType kind : {DataType::ColorImage, DataType::GrayscaleImage, DataType::DepthImage})
        for (const float factor : {0.0f, 0.3f, 0.5f, 1.0f, -1.0f, 3.7f, 1e30f, -1e30f, NAN})
            forEachShape([&](const Shape& shape) {
                FilterRunner run;
                const cv::Mat first = shape.random(matTypeOf(kind));
                const cv::Mat second = shape.random(matTypeOf(kind));
                ASSERT_EQ(run("Accum", {imageOf(kind, first), value(factor)}), Values(1));
                const auto average = run.only("Accum", {imageOf(kind, second), value(factor)});
                EXPECT_EQ(average->getType(), kind);
                EXPECT_TRUE(hasOrigin(average));
                const int a = ZR::Corvale::truncate<int>(factor * 256.0f);
                const int b = ZR::Corvale::truncate<int>((1.0f - factor) * 256.0f);
                expectComponents(dataToCvMat(average), first.size(), first.type(), [&](int y, int x, int c) {
                    const auto sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(
                        1LL * at(second, y, x, c) * a + 1LL * at(first, y, x, c) * b));
                    return (sum >> 8) & (kind == DataType::DepthImage ? 0xffff : 0xff);
                });
            });
}

TEST(Accum, KeepsACloneOfItsOwnForEachProcessAndScope)
{
    FilterRunner run;
    const auto input = gray(100);
    for (const char* process : {"p", "q"})
        for (const char* scope : {"s", "t"})
            EXPECT_EQ(run("Accum", {input, value(0.5f)}, process, scope), Values(1));
    dataToCvMat(input).setTo(0); // the accumulators must not see this
    const auto average = run("Accum", {gray(200), value(0.5f)}, "p", "s").at(0);
    EXPECT_EQ(dataToCvMat(average).at<uchar>(0), 150);
    EXPECT_EQ(dataToCvMat(run("Accum", {gray(0), value(0.0f)}, "q", "s").at(0)).at<uchar>(0), 100);
    EXPECT_EQ(run("Accum", {gray(0), value(1.0f)}, "p", "s").at(0), average); // in place
    EXPECT_EQ(dataToCvMat(average).at<uchar>(0), 0);
}

TEST(Accum, StaysAsItIsForAnotherKindOrSize)
{
    FilterRunner run;
    run("Accum", {gray(100), value(0.5f)});
    const auto average = run.only("Accum", {gray(100), value(0.5f)});
    const auto depth = imageOf(DataType::DepthImage, cv::Mat(1, 1, CV_16UC1, cv::Scalar(9)));
    EXPECT_EQ(run.only("Accum", {depth, value(0.5f)}), average);
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_TRUE(run("Accum", {gray(1, {2, 1}), value(0.5f)}).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.accum"),
              std::vector<std::string>{" [Invalid Input] -> Accum -> ..."});
    EXPECT_EQ(dataToCvMat(average).at<uchar>(0), 100);
    // It may come back as an input.
    EXPECT_EQ(dataToCvMat(run.only("Accum", {average, value(0.5f)})).at<uchar>(0), 100);
}

} // namespace
