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

#include <functional>
#include <limits>
#include <map>
#include <vector>

namespace {

using namespace ZR::Corvale::Type;
using Pixel = cv::Vec3b;

Pixel ramp(float t)
{
    if (t > 1.0f)
        return {0, 0, 255};
    const float u = 1.0f - t;
    return {static_cast<uchar>(255.0f * u * u * u), static_cast<uchar>(255.0f * (1.0f - (u * u * u + t * t))),
            static_cast<uchar>(255.0f * t * t)};
}

Pixel depthPixel(unsigned short distance)
{
    if (distance == 0)
        return {0, 0, 0};
    return distance < 200 ? Pixel(85, 85, 85) : ramp((distance - 200) / 3800.0f);
}

Pixel pointPixel(float x)
{
    const float distance = x * 1000.0f;
    if (x == 0.0f || std::isnan(x))
        return {0, 0, 0};
    return distance < 300.0f ? Pixel(85, 85, 85) : ramp((distance - 300.0f) / 3700.0f);
}

// Sweeps odd sizes, around the size of an inner block too, each as a part of a larger matrix.
template <typename Kind, typename T>
void expectPicture(double low, double high,
                   const std::function<std::vector<Pixel>(const std::vector<T>&)>& plain)
{
    cv::RNG random(7);
    for (const cv::Size size :
         {cv::Size(1, 1), cv::Size(3, 5), cv::Size(255, 2), cv::Size(257, 3), cv::Size(513, 4)}) {
        cv::Mat whole(size.height + 2, size.width + 3, Kind::MatType);
        random.fill(whole, cv::RNG::UNIFORM, low, high);
        Kind image(whole(cv::Rect(cv::Point(1, 1), size)));
        const cv::Mat_<T> copy = image.mat.clone();

        const boost::shared_ptr<ColorImage> picture = image.toColorImage();
        ASSERT_NE(picture, nullptr);
        ASSERT_EQ(picture->mat.size(), size);
        const std::vector<Pixel> expected = plain(std::vector<T>(copy.begin(), copy.end()));
        EXPECT_EQ(std::vector<Pixel>(picture->mat.begin<Pixel>(), picture->mat.end<Pixel>()), expected)
            << size;
    }
}

// Lifts the colour of one pixel to all of them.
template <typename T>
std::function<std::vector<Pixel>(const std::vector<T>&)> each(const std::function<Pixel(T)>& color)
{
    return [color](const std::vector<T>& pixels) {
        std::vector<Pixel> colors;
        for (const T& pixel : pixels)
            colors.push_back(color(pixel));
        return colors;
    };
}

TEST(ColorPicture, OfMasksAndGreyPictures)
{
    expectPicture<BinaryImage, uchar>(
        0, 3, each<uchar>([](uchar on) { return on ? Pixel::all(255) : Pixel::all(0); }));
    expectPicture<GrayscaleImage, uchar>(0, 256, each<uchar>([](uchar level) { return Pixel::all(level); }));
}

TEST(ColorPicture, OfEveryDepth)
{
    std::vector<unsigned short> depths(65'536);
    for (std::size_t i = 0; i < depths.size(); ++i)
        depths[i] = static_cast<unsigned short>(i);
    const auto picture = DepthImage(depths.data(), 256, 256).toColorImage();
    for (int i = 0; i < 65'536; ++i)
        ASSERT_EQ(picture->mat.at<Pixel>(i / 256, i % 256), depthPixel(depths[i])) << i;
    EXPECT_EQ(depthPixel(200), Pixel(255, 0, 0));
    expectPicture<DepthImage, unsigned short>(0, 5000, each<unsigned short>(depthPixel));
}

TEST(ColorPicture, OfPoints)
{
    expectPicture<XYZImage, cv::Vec3f>(-1, 5,
                                       each<cv::Vec3f>([](cv::Vec3f point) { return pointPixel(point[0]); }));

    const float odd = std::numeric_limits<float>::quiet_NaN(), huge = std::numeric_limits<float>::infinity();
    const float points[] = {0.0f, 1,     1, -0.0f, 1,     1, odd, 1,    1,   huge, 1,
                            1,    -huge, 1, 1,     3e38f, 1, 1,   4.0f, odd, odd};
    const auto picture = XYZImage(points, 7, 1).toColorImage();
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(picture->mat.at<Pixel>(0, i), pointPixel(points[3 * i])) << i;
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
            colors.push_back(background
                                 ? Pixel(0, 0, 0)
                                 : Pixel(255, static_cast<uchar>(id & 255), static_cast<uchar>(id >> 8)));
        }
        return colors;
    };
    expectPicture<LabelImage, int>(-2, 20, plain);
    expectPicture<LabelImage, int>(0, 2100, plain); // some above rows * cols
    expectPicture<LabelImage, int>(INT_MIN, INT_MAX, plain);
    expectPicture<LabelImage, int>(-9, 0, plain);

    // A region that begins at pixel 0 takes the id of its second pixel from there on.
    int labels[] = {1, 0, 1, 1};
    const auto picture = LabelImage(labels, 4, 1).toColorImage();
    EXPECT_EQ(picture->mat.at<Pixel>(0, 0), Pixel(255, 0, 0));
    EXPECT_EQ(picture->mat.at<Pixel>(0, 3), Pixel(255, 2, 0));
}

TEST(ColorPicture, HasNeitherNameNorTimeOfItsSource)
{
    const auto picture = GrayscaleImage(2, 2, "camera", Time(5), 1, 1).toColorImage();
    EXPECT_EQ(picture->name, "unknow");
    EXPECT_GT(picture->timestamp, Time(5));
    EXPECT_EQ(picture->fovX, 0.0f);
}

TEST(ColorPicture, OfMatricesOfAnotherTypeIsRefused)
{
    const support::LogCapture log;
    const cv::Mat bytes(3, 3, CV_8UC1, cv::Scalar(1));
    EXPECT_EQ(DepthImage(bytes).toColorImage(), nullptr);
    EXPECT_EQ(XYZImage(bytes).toColorImage(), nullptr);
    EXPECT_EQ(LabelImage(bytes).toColorImage(), nullptr);
    EXPECT_EQ(GrayscaleImage(cv::Mat(3, 3, CV_8UC3)).toColorImage(), nullptr);
    const int sizes[] = {2, 2, 2};
    EXPECT_EQ(BinaryImage(cv::Mat(3, sizes, CV_8UC1)).toColorImage(), nullptr);
    EXPECT_EQ(log.count(rk::log::Error), 5u);
    EXPECT_EQ(DepthImage(0, 0).toColorImage()->mat.size(), cv::Size(0, 0));
}

TEST(Oscillogram, ShowsEachChannelInItsBand)
{
    const auto blueRows = [](ColorImage& picture, int x) {
        std::vector<int> rows;
        for (int y = 0; y < picture.mat.rows; ++y)
            if (picture.pixelBlue(x, y) != 0)
                rows.push_back(y);
        return rows;
    };
    const std::vector<short> silence(640, 0);
    auto picture = AudioBuffer(silence.data(), 640, 2, 16'000, Time(5)).toColorImage();
    ASSERT_EQ(picture->mat.size(), cv::Size(320, 240));
    for (int x : {0, 319})
        EXPECT_EQ(blueRows(*picture, x), (std::vector<int>{60, 180}));
    EXPECT_EQ(cv::sum(picture->mat), cv::Scalar(0, 0, 255 * 640));

    // Three samples, the last at full depth: it reaches beyond the picture.
    const short loud[] = {32'767, 0, -32'768};
    picture = AudioBuffer(loud, 3, 1, 16'000, Time(5)).toColorImage();
    EXPECT_EQ(blueRows(*picture, 0).front(), 0);
    EXPECT_EQ(blueRows(*picture, 0).back(), 120);
    EXPECT_EQ(blueRows(*picture, 110), std::vector<int>{120});
    EXPECT_EQ(blueRows(*picture, 319).front(), 120);
    EXPECT_EQ(blueRows(*picture, 319).size(), 120u);

    for (const auto& [size, channels] : {std::pair(0u, 1u), std::pair(3u, 0u), std::pair(3u, 4u)})
        EXPECT_EQ(cv::sum(AudioBuffer(loud, size, channels, 1, Time()).toColorImage()->mat), cv::Scalar());
}

// Height of the bar in a column: the pixels that are not white, all of one colour and at the bottom.
int barHeight(const ColorImage& picture, int x, const Pixel& color)
{
    int y = picture.mat.rows;
    while (y > 0 && picture.mat.at<Pixel>(y - 1, x) == color)
        --y;
    const int height = picture.mat.rows - y;
    for (--y; y >= 0; --y)
        EXPECT_EQ(picture.mat.at<Pixel>(y, x), Pixel::all(255)) << x << "," << y;
    return height;
}

TEST(BarChart, ScalesItsBarsAndColoursThreeChannels)
{
    const float bins[] = {10, 12.9f, 650, 10, 11};
    const auto gray = Histogram(bins, 5, 1).toColorImage();
    ASSERT_EQ(gray->mat.size(), cv::Size(5, 640));
    const int heights[] = {0, 1, 639, 0, 0};
    for (int x = 0; x < 5; ++x)
        EXPECT_EQ(barHeight(*gray, x, Pixel::all(0)), heights[x]) << x;

    // A range of 2,000 is halved twice; the last triple is not complete.
    const float wide[] = {0, 2'000, 400, 1'000, 7.9f};
    const auto colored = Histogram(wide, 5, 3).toColorImage();
    const Pixel red(255, 0, 0), green(0, 255, 0), blue(0, 0, 255);
    EXPECT_EQ(barHeight(*colored, 1, green), 499);
    EXPECT_EQ(barHeight(*colored, 2, blue), 99);
    EXPECT_EQ(barHeight(*colored, 3, red), 249);
    EXPECT_EQ(barHeight(*colored, 4, green), 0);
}

TEST(BarChart, StaysInsideOnOddBins)
{
    const float odd = std::numeric_limits<float>::quiet_NaN(), huge = std::numeric_limits<float>::infinity();
    for (std::vector<float> bins :
         {std::vector<float>{0, 3e9f, 5e9f}, {odd, 1, 2}, {1, odd, 2}, {-huge, 0, huge}})
        EXPECT_EQ(Histogram(bins.data(), 3, 3).toColorImage()->mat.size(), cv::Size(3, 640));
    EXPECT_EQ(Histogram(0, 1).toColorImage()->mat.size(), cv::Size(0, 640));
    const float bins[] = {0, 100, 200};
    EXPECT_EQ(cv::sum(Histogram(bins, 3, 0).toColorImage()->mat),
              cv::Scalar(255 * 1920, 255 * 1920, 255 * 1920));
}

} // namespace
