#include "corvale/data/databinaryimage.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/datamatriximage.h"
#include "corvale/data/dataxyzimage.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace ZR::Corvale::Type;

template <typename Kind>
class ImageKind : public testing::Test
{
};
using Kinds =
    testing::Types<ColorImage, BinaryImage, GrayscaleImage, LabelImage, DepthImage, XYZImage, MatrixImage>;
TYPED_TEST_SUITE(ImageKind, Kinds, ); // the macro wants its third argument, empty or not

template <typename T, int C>
std::vector<T> ramp(const Image<T, C>&, int pixels)
{
    std::vector<T> components(pixels * C);
    for (std::size_t i = 0; i < components.size(); ++i)
        components[i] = static_cast<T>(i + 1);
    return components;
}

TYPED_TEST(ImageKind, CopiesConstPixelsWrapsOthersAndCutsDeepCopiesAlsoOfNothing)
{
    auto source = ramp(TypeParam(1, 1), 5 * 3);
    const auto* constSource = source.data();
    const TypeParam copy(constSource, 5, 3, "origin", Time(5), 1.0f, 2.0f);
    const TypeParam wrap(source.data(), 5, 3);
    EXPECT_EQ(copy.mat.type(), TypeParam::MatType);
    EXPECT_EQ(wrap.mat.data, reinterpret_cast<unsigned char*>(source.data()));

    const auto clone = wrap.clone();
    const auto part = copy.extract(Region2(1, 1, 3, 2));
    const auto small = copy.scaleDown(2);
    source.assign(source.size(), 0);
    const auto differ = [](const cv::Mat& a, const cv::Mat& b) { return cv::norm(a, b, cv::NORM_INF) != 0; };
    EXPECT_TRUE(!differ(copy.mat, clone->mat) && differ(copy.mat, wrap.mat));
    EXPECT_EQ(cv::norm(wrap.mat), 0.0);

    EXPECT_TRUE(part->mat.isContinuous() && !differ(part->mat, copy.mat(cv::Rect(1, 1, 3, 2))));
    ASSERT_EQ(small->mat.size(), cv::Size(2, 1));
    for (const int x : {0, 1})
        EXPECT_FALSE(differ(small->mat.col(x), copy.mat(cv::Rect(2 * x, 0, 1, 1))));
    EXPECT_TRUE(small->name == "origin" && small->timestamp == Time(5) && small->fovY == 2.0f);

    const TypeParam empty(0, 7);
    EXPECT_EQ(empty.clone()->mat.size(), cv::Size(0, 7));
    EXPECT_EQ(empty.clone()->mat.type(), TypeParam::MatType);
    EXPECT_THROW(TypeParam(1, 2).scaleDown(3), cv::Exception);
    EXPECT_THROW(TypeParam(1, 2).scaleDown(0), cv::Exception);
}

TEST(Image, StampsItselfUnlessItIsStamped)
{
    const Time before = Time::now();
    const ColorImage stamped(2, 2);
    EXPECT_TRUE(stamped.timestamp >= before && stamped.timestamp <= Time::now());
    EXPECT_EQ(ColorImage(2, 2, "x", Time(5)).timestamp, Time(5));
    EXPECT_TRUE(LabelImage(cv::Mat()).timestamp >= before);
    EXPECT_EQ(stamped.name, "unknow");
}

TEST(Image, ExtractRoundsCutsAndShrinksTheView)
{
    // 4 x 4, each pixel its column plus ten times its row.
    LabelImage image(4, 4, "camera", Time(5), 60.0f, 40.0f);
    for (int i = 0; i < 16; ++i)
        image.pixel(i % 4, i / 4) = i % 4 + 10 * (i / 4);
    const auto pixels = [](const LabelImage& part) {
        return std::vector<int>(part.mat.begin<int>(), part.mat.end<int>());
    };
    const auto corner = image.extract(-3.2f, -3.2f, 1.4f, 1.4f);
    EXPECT_EQ(pixels(*corner), (std::vector<int>{0, 1, 10, 11}));
    EXPECT_TRUE(corner->fovX == 30.0f && corner->fovY == 20.0f && corner->name == "camera");
    EXPECT_EQ(pixels(*image.extract(0.5f, 0.5f, 1.5f, 1.5f)), (std::vector<int>{11, 12, 21, 22}));
    EXPECT_EQ(pixels(*image.extract(3, 2, 3, 4)), (std::vector<int>{23, 33}));
    const float huge = std::numeric_limits<float>::infinity();
    EXPECT_EQ(pixels(*image.extract(-huge, -1e30f, huge, 1e30f)), pixels(image));
    EXPECT_TRUE(image.extract(2, 2, 1, 1)->mat.empty());

    // Corners that are not in order are refused.
    using Corners = cv::Vec4f;
    for (const Corners& c :
         {Corners(3, 3, 1, 1), {9, 0, 20, 3}, {0, 0, -5, 3}, {huge, 0, huge, 3}, {0, 0, std::nanf(""), 3}})
        EXPECT_THROW(image.extract(c[0], c[1], c[2], c[3]), cv::Exception) << c;
    EXPECT_THROW(LabelImage(cv::Mat()).extract(0, 0, 1, 1), cv::Exception);
}

TEST(LabelImage, ChangeLabelReachesEveryPixelOfAPartAndNoOther)
{
    cv::Mat whole(5, 40, CV_32SC1, cv::Scalar(7));
    LabelImage part(whole(cv::Rect(1, 1, 37, 3)));
    part.pixel(36, 2) = 6;
    part.changeLabel(7, 7);
    part.changeLabel(7, -8);
    EXPECT_EQ(cv::countNonZero(whole == -8), 37 * 3 - 1);
    EXPECT_EQ(cv::countNonZero(whole == 7), 5 * 40 - 37 * 3);
    EXPECT_EQ(part.pixel(36, 2), 6);
}

TEST(NewMatrix, TakesABlockThatNobodyUses)
{
    const cv::Size size(1000, 500);
    cv::Mat first = ZR::Corvale::newMatrix(size, CV_8UC3), shared = first, part = first.row(3);
    first.release();
    EXPECT_NE(ZR::Corvale::newMatrix(size, CV_8UC3).data, shared.data);
    shared.release();
    part.setTo(7);
    EXPECT_NE(ZR::Corvale::newMatrix(size, CV_8UC3).ptr(3), part.data);
    for (int i = 0; i < 1000; ++i) // more than is kept
        part = ZR::Corvale::newMatrix({1000, 300 + i}, CV_8UC3).row(0);
    part.setTo(7);
}

} // namespace
