// Pictures for people, compared with a plain evaluation pixel by pixel.

#include "corvale/data/dataaudiobuffer.h"
#include "corvale/data/databinaryimage.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datahistogram.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/dataxyzimage.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <numeric>
#include <vector>

namespace {

using namespace ZR::Corvale::Type;
using Pixel = cv::Vec3b;

// Nothing is black, what is nearer than the ramp grey, what is beyond it red.
Pixel distancePixel(float distance, float nearest)
{
    if (distance == 0.0f || std::isnan(distance))
        return {0, 0, 0};
    if (distance < nearest)
        return {85, 85, 85};
    const float t = (distance - nearest) / (4000.0f - nearest), u = 1.0f - t;
    if (t > 1.0f)
        return {0, 0, 255};
    return {static_cast<uchar>(255.0f * u * u * u), static_cast<uchar>(255.0f * (1.0f - (u * u * u + t * t))),
            static_cast<uchar>(255.0f * t * t)};
}
Pixel depthPixel(unsigned short distance)
{
    return distancePixel(distance, 200);
}
Pixel pointPixel(cv::Vec3f point)
{
    return distancePixel(point[0] * 1000.0f, 300);
}

template <typename T>
using Plain = std::function<std::vector<Pixel>(const std::vector<T>&)>;

// Sweeps odd sizes, around the size of an inner block too, each as a part of a larger matrix.
template <typename Kind, typename T>
void expectPicture(double low, double high, const Plain<T>& plain)
{
    cv::RNG random(7);
    using Size = cv::Size;
    for (const Size size : {Size(1, 1), Size(3, 5), Size(255, 2), Size(257, 3), Size(513, 4)}) {
        cv::Mat whole(size.height + 2, size.width + 3, Kind::MatType);
        random.fill(whole, cv::RNG::UNIFORM, low, high);
        Kind image(whole(cv::Rect(cv::Point(1, 1), size)));
        const cv::Mat_<T> copy = image.mat.clone();

        const boost::shared_ptr<ColorImage> picture = image.toColorImage();
        ASSERT_NE(picture, nullptr);
        ASSERT_EQ(picture->mat.size(), size);
        const std::vector<Pixel> expected = plain(std::vector<T>(copy.begin(), copy.end()));
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), picture->mat.begin<Pixel>())) << size;
    }
}

// Lifts the colour of one pixel to all of them.
template <typename T>
Plain<T> each(const std::function<Pixel(T)>& color)
{
    return [color](const std::vector<T>& pixels) {
        std::vector<Pixel> colors(pixels.size());
        std::transform(pixels.begin(), pixels.end(), colors.begin(), color);
        return colors;
    };
}

TEST(ColorPicture, OfMasksAndGreyPictures)
{
    expectPicture<BinaryImage, uchar>(
        0, 3, each<uchar>([](uchar on) { return on ? Pixel::all(255) : Pixel::all(0); }));
    expectPicture<GrayscaleImage, uchar>(0, 256, each<uchar>([](uchar level) { return Pixel::all(level); }));
}

TEST(ColorPicture, OfDepthsAndPoints)
{
    std::vector<unsigned short> depths(65'536);
    std::iota(depths.begin(), depths.end(), 0);
    const auto picture = DepthImage(depths.data(), 256, 256, "camera", Time(5), 1).toColorImage();
    EXPECT_TRUE(picture->name == "unknow" && picture->timestamp != Time(5) && picture->fovX == 0.0f);
    for (int i = 0; i < 65'536; ++i)
        ASSERT_EQ(picture->mat.at<Pixel>(i / 256, i % 256), depthPixel(depths[i])) << i;
    EXPECT_EQ(depthPixel(200), Pixel(255, 0, 0));
    expectPicture<DepthImage, unsigned short>(0, 5000, each<unsigned short>(depthPixel));

    expectPicture<XYZImage, cv::Vec3f>(-1, 5, each<cv::Vec3f>(pointPixel));
    const float odd = std::numeric_limits<float>::quiet_NaN(), huge = std::numeric_limits<float>::infinity();
    for (const float x : {0.0f, -0.0f, odd, huge, -huge, 3e38f, 0.3f, 4.0f}) {
        const cv::Vec3f point(x, odd, huge);
        EXPECT_EQ(XYZImage(point.val, 1, 1).toColorImage()->mat.at<Pixel>(0, 0), pointPixel(point)) << x;
    }
}

TEST(ColorPicture, OfLabels)
{
    const auto plain = [](const std::vector<int>& labels) {
        std::map<int, int> ids;
        std::vector<Pixel> colors;
        for (int i = 0; i < static_cast<int>(labels.size()); ++i) {
            const int label = labels[i];
            const bool background = label <= 0 || label > static_cast<int>(labels.size());
            if (!background && ids[label] == 0)
                ids[label] = i;
            const int id = background ? 0 : ids[label];
            colors.emplace_back(background ? 0 : 255, id & 255, id >> 8 & 255);
        }
        return colors;
    };
    for (const auto& [low, high] : {std::pair(-2, 20), std::pair(0, 2'100), std::pair(INT_MIN, INT_MAX)})
        expectPicture<LabelImage, int>(low, high, plain);

    // A region that begins at pixel 0 takes the id of its second pixel from there on.
    int labels[] = {1, 0, 1, 1};
    const auto picture = LabelImage(labels, 4, 1).toColorImage();
    EXPECT_TRUE(picture->pixelGreen(0, 0) == 0 && picture->pixelGreen(3, 0) == 2);
}

TEST(ColorPicture, OfMatricesOfAnotherTypeIsRefused)
{
    const support::LogCapture log;
    const cv::Mat bytes(3, 3, CV_8UC1, cv::Scalar(1));
    const int sizes[] = {2, 2, 2};
    EXPECT_FALSE(DepthImage(bytes).toColorImage() || XYZImage(bytes).toColorImage() ||
                 LabelImage(bytes).toColorImage() || GrayscaleImage(cv::Mat(3, 3, CV_8UC3)).toColorImage() ||
                 BinaryImage(cv::Mat(3, sizes, CV_8UC1)).toColorImage());
    LabelImage labels(bytes);
    labels.changeLabel(1, 2);
    EXPECT_EQ(cv::countNonZero(bytes == 1), 9);
    EXPECT_EQ(log.count(rk::log::Error), 6u);
    EXPECT_EQ(DepthImage(0, 0).toColorImage()->mat.size(), cv::Size(0, 0));
}

// The number of pixels of this colour in a column.
long count(const ColorImage& picture, int x, const Pixel& color)
{
    const cv::Mat_<Pixel> column = picture.mat.col(x);
    return std::count(column.begin(), column.end(), color);
}

TEST(Oscillogram, ShowsEachChannelInItsBand)
{
    const std::vector<short> silence(640, 0);
    auto picture = AudioBuffer(silence.data(), 640, 2, 16'000, Time(5)).toColorImage();
    ASSERT_EQ(picture->mat.size(), cv::Size(320, 240));
    EXPECT_EQ(cv::sum(picture->mat.row(60)), cv::Scalar(0, 0, 255 * 320));
    EXPECT_EQ(cv::sum(picture->mat.row(180)), cv::Scalar(0, 0, 255 * 320));
    EXPECT_EQ(cv::sum(picture->mat), cv::Scalar(0, 0, 255 * 640));

    const short loud[] = {32'767, 0, -32'768}; // the last one reaches beyond the picture
    picture = AudioBuffer(loud, 3, 1, 16'000, Time(5)).toColorImage();
    const Pixel blue(0, 0, 255);
    EXPECT_TRUE(count(*picture, 0, blue) == 121 && picture->pixelBlue(0, 0) == 255);
    EXPECT_TRUE(count(*picture, 110, blue) == 1 && picture->pixelBlue(110, 120) == 255);
    EXPECT_TRUE(count(*picture, 319, blue) == 120 && picture->pixelBlue(319, 239) == 255);

    for (const auto& [size, channels] : {std::pair(0u, 1u), std::pair(3u, 0u), std::pair(3u, 4u)})
        EXPECT_EQ(cv::sum(AudioBuffer(loud, size, channels, 1, Time()).toColorImage()->mat), cv::Scalar());
}

TEST(BarChart, ScalesItsBarsColoursThreeChannelsAndStaysInside)
{
    const float bins[] = {10, 12.9f, 650, 10, 11};
    const long heights[] = {0, 1, 639, 0, 0};
    const auto gray = Histogram(bins, 5, 1).toColorImage();
    ASSERT_EQ(gray->mat.size(), cv::Size(5, 640));
    for (int x = 0; x < 5; ++x)
        EXPECT_EQ(std::pair(count(*gray, x, {0, 0, 0}), count(*gray, x, {255, 255, 255})),
                  std::pair(heights[x], 640 - heights[x]))
            << x;
    EXPECT_EQ(gray->pixelRed(1, 639), 0);

    // A range of 2,000 is halved twice; the last triple is not complete.
    const float wide[] = {0, 2'000, 400, 1'000, 7.9f};
    const auto colored = Histogram(wide, 5, 3).toColorImage();
    EXPECT_EQ(count(*colored, 1, Pixel(0, 255, 0)), 499);
    EXPECT_EQ(count(*colored, 2, Pixel(0, 0, 255)), 99);
    EXPECT_EQ(count(*colored, 3, Pixel(255, 0, 0)), 249);
    EXPECT_EQ(count(*colored, 4, Pixel::all(255)), 640);

    // Odd bins stay inside.
    const float odd = std::numeric_limits<float>::quiet_NaN(), huge = std::numeric_limits<float>::infinity();
    for (const auto& bins : {cv::Vec3f(0, 3e9f, 5e9f), {odd, 1, 2}, {1, odd, 2}, {-huge, 0, huge}})
        EXPECT_EQ(Histogram(bins.val, 3, 3).toColorImage()->mat.size(), cv::Size(3, 640));
    EXPECT_EQ(Histogram(0, 1).toColorImage()->mat.size(), cv::Size(0, 640));
    EXPECT_EQ(count(*Histogram(wide, 2, 0).toColorImage(), 1, Pixel::all(255)), 640);
}

} // namespace
