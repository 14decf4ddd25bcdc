#include "corvale/data/dataregion2.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <climits>
#include <cmath>

using namespace support;
using namespace ZR::Corvale;

namespace {

constexpr DataType Label = DataType::LabelImage;
constexpr DataType Color = DataType::ColorImage;

// What is known of the label with that index, found out pixel by pixel.
struct Region
{
    int pixels = 0;
    float sumX = 0, sumY = 0;
    int minX = 65535, minY = 65535, maxX = 0, maxY = 0;

    float ratio() const
    {
        return maxX > minX && maxY != minY ? float(maxX - minX) / float(maxY - minY) : 0.0f;
    }
};

std::vector<Region> literalRegions(const cv::Mat& labels)
{
    std::vector<Region> regions(labels.total() + 1);
    for (int y = 0; y < labels.rows; ++y)
        for (int x = 0; x < labels.cols; ++x) {
            const int label = labels.at<int>(y, x);
            if (label <= 0 || label >= int(regions.size()))
                continue;
            Region& region = regions[label];
            ++region.pixels;
            region.sumX += float(x);
            region.sumY += float(y);
            region.minX = std::min(region.minX, x);
            region.maxX = std::max(region.maxX, x);
            region.minY = std::min(region.minY, y);
            region.maxY = std::max(region.maxY, y);
        }
    return regions;
}

// Labels around the ends of their range and far beyond, in runs of `length` pixels.
cv::Mat randomLabels(const Shape& shape, int length, int labels)
{
    cv::Mat image = shape.random(CV_32SC1);
    for (int y = 0; y < image.rows; ++y)
        for (int x = 0; x < image.cols; ++x) {
            int& label = image.at<int>(y, x);
            if (x % length != 0)
                label = image.at<int>(y, x - 1);
            else if (label % 8 != 0)
                label = std::abs(label) % labels;
        }
    return image;
}

void expectLiteralRegions(FilterRunner& run, const cv::Mat& labels)
{
    const auto in = imageOf(Label, labels);
    const std::vector<Region> regions = literalRegions(labels);
    Values boxes;
    std::vector<Type::Vector2> centres;
    for (std::size_t label = 0; label < regions.size(); ++label) {
        const Region& region = regions[label];
        if (label < labels.total() && region.maxX > region.minX)
            boxes.push_back(value(Type::Region2(region.minX, region.minY, region.maxX, region.maxY)));
        const auto pixels = float(region.pixels);
        if (pixels > 0)
            centres.emplace_back(region.sumX / pixels, region.sumY / pixels);
    }
    const Values found = run("BoundingBox", {in});
    ASSERT_EQ(found.at(0)->toString(), value(boxes)->toString());
    ASSERT_EQ(found.at(1)->toString(), Data(float(labels.cols), float(labels.rows)).toString());
    const Values means = *run.only("Gravity", {in});
    ASSERT_EQ(means.size(), centres.size());
    for (std::size_t i = 0; i < means.size(); ++i)
        ASSERT_EQ(*static_cast<Type::Vector2*>(*means[i]), centres[i]);

    const auto expectKept = [&](const boost::shared_ptr<Data>& actual, const auto& suits) {
        expectImage(actual, labels.size(), Label, true, [&](int y, int x, int) {
            const int label = labels.at<int>(y, x);
            return label > 0 && label < int(regions.size()) && suits(regions[label]) ? label : 0;
        });
    };
    for (const int min : {INT_MIN, 1, 2, 40})
        for (const int max : {-1, 1, 3, INT_MAX})
            expectKept(run.only("Density", {in, value(min), value(max)}),
                       [&](const Region& region) { return region.pixels >= min && region.pixels <= max; });
    for (const float min : {-INFINITY, 0.0f, 0.5f, 2.0f, NAN})
        for (const float max : {0.0f, 2.0f, INFINITY})
            expectKept(run.only("Ratio", {in, value(min), value(max)}),
                       [&](const Region& region) { return region.ratio() >= min && region.ratio() <= max; });
}

TEST(LabelFilters, EqualTheLiteralEvaluation)
{
    FilterRunner run;
    forEachShape([&](const Shape& shape) {
        for (const int length : {1, 3, 40})
            for (const int labels : {2, 5, shape.size.area() + 2})
                expectLiteralRegions(run, randomLabels(shape, length, labels));
    });
    expectLiteralRegions(run, cv::Mat(331, 601, CV_32SC1, cv::Scalar(3))); // float sums that are rounded
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(LabelFilters, RefuseWhatSixteenBitsCannotCount)
{
    FilterRunner run;
    for (const cv::Size size : {cv::Size(65536, 1), cv::Size(1, 65536)}) {
        const auto in = imageOf(Label, cv::Mat(size, CV_32SC1));
        for (const Values& outputs :
             {run("BoundingBox", {in}), run("Gravity", {in}), run("Ratio", {in, value(0.0f), value(1.0f)})})
            EXPECT_TRUE(outputs.empty());
    }
    EXPECT_EQ(run.log.messages(rk::log::Error).size(), 6u);
}

TEST(Ratio, KeepsTheVeryBoxesOfAnArrayThatSuit)
{
    const auto box = [](float x, float y) { return value(Type::Region2(1, 1, 1 + x, 1 + y)); };
    const Values suiting{box(4, 2), box(-4, -2), box(3, 1)};
    const Values elements{suiting[0], box(4, 0), nullptr,          value(2.0f),
                          suiting[1], box(4, 1), value("Region2"), value(boost::shared_ptr<Type::Region2>()),
                          suiting[2], box(1, 1), box(NAN, 2),      box(1, NAN)};
    const Values kept = *FilterRunner().only("Ratio", {value(elements), value(2.0f), value(3.0f)});
    EXPECT_EQ(kept, suiting);
}

// Whether a pixel lies on the frame of a region, or on the arms of a point.
bool marks(const Type::Region2& region, int x, int y)
{
    const float left = std::trunc(region.start.x()), right = std::trunc(region.end.x());
    const float top = std::trunc(region.start.y()), bottom = std::trunc(region.end.y());
    return ((y == top || y == bottom) && x >= left && x < right) ||
           ((x == left || x == right) && y >= top && y < bottom);
}

bool marks(const Type::Vector2& point, int x, int y, cv::Size size)
{
    const auto within = [](int i, float centre, int last) {
        return i >= std::trunc(centre - 3) && i < std::trunc(centre + 4) && i < last;
    };
    return (y == std::trunc(point.y()) && within(x, point.x(), size.width - 1)) ||
           (x == std::trunc(point.x()) && within(y, point.y(), size.height - 1));
}

TEST(Draw, EqualsTheLiteralEvaluationWhereverTheMarksLie)
{
    FilterRunner run;
    const float ends[] = {-INFINITY, -1e10f, -4.5f, -0.5f, 0, 2.9f, 4, 6, 7, 9.5f, INFINITY, NAN};
    const char* words[] = {"Red", "green", "blue", "black", "white"};
    const cv::Size size(7, 9);
    const cv::Mat image = Shape{size, true}.random(CV_8UC3), before = image.clone();
    cv::RNG generator(1);
    const auto end = [&] { return ends[generator.uniform(0, int(std::size(ends)))]; };
    for (int i = 0; i < 2000; ++i) {
        const Type::Region2 region(end(), end(), end(), end());
        const Type::Vector2 &point = region.start, &corner = region.end;
        const bool isPoint = i % 2 == 0, isNamed = i % 6 != 0;
        const int word = isNamed ? generator.uniform(0, 5) : isPoint ? 3 : 0;
        const auto colour = [word](int component) { return word == component || word == 4 ? 255 : 0; };
        const bool numbers = point == point && (isPoint || corner == corner);
        const auto data = value(Values{nullptr, value(1), isPoint ? value(point) : value(region)});
        const auto result =
            run.only("Draw", {imageOf(Color, image), data, isNamed ? value(words[word]) : value(i)});
        expectImage(result, size, Color, true, [&](int y, int x, int c) -> int {
            const bool centre = isPoint && x == std::trunc(point.x()) && y == std::trunc(point.y());
            const bool marked = isPoint ? marks(point, x, y, size) : marks(region, x, y);
            return numbers && centre ? 255 : numbers && marked ? colour(c) : at(before, y, x, c);
        });
    }
}

TEST(Draw, LeavesACopyUnmarkedAndRefusesQuietlyWhatIsNoColour)
{
    FilterRunner run;
    const cv::Mat image = Shape{{4, 3}, false}.random(CV_8UC3);
    const auto copy = run.only("Draw", {imageOf(Color, image), value(Type::Vector2(1, 1)), nullptr});
    EXPECT_NE(dataToCvMat(copy).data, image.data);
    expectImage(copy, image.size(), Color, true, [&](int y, int x, int c) { return at(image, y, x, c); });
    const auto gray = imageOf(DataType::GrayscaleImage, cv::Mat(3, 4, CV_8UC1));
    EXPECT_TRUE(run("Draw", {gray, value(Values()), nullptr}).empty());
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_TRUE(run("Draw", {imageOf(Color, cv::Mat(3, 4, CV_8UC1)), value(Values()), nullptr}).empty());
    EXPECT_EQ(run.log.count(), 1u);
}

TEST(Extract, CutsOutWhatTheRegionCovers)
{
    FilterRunner run;
    const cv::Mat image = Shape{{7, 5}, true}.random(CV_8UC3);
    const auto cut = [&](float x1, float y1, float x2, float y2) {
        return run("Extract", {imageOf(Color, image), value(Type::Region2(x1, y1, x2, y2))});
    };
    const Values parts = cut(1.5f, -9, 1e9f, 2);
    const Type::ColorImage& part = *static_cast<Type::ColorImage*>(*parts.at(0));
    EXPECT_EQ(cv::norm(part.mat, image(cv::Rect(2, 0, 5, 3)), cv::NORM_INF), 0);
    EXPECT_EQ(part.name, "camera");
    EXPECT_EQ(part.fovX, 1.5f * 5 / 7);
    EXPECT_TRUE(run("Extract", {imageOf(Color, image), value(boost::shared_ptr<Type::Region2>())}).empty());
    EXPECT_EQ(run.log.count(), 0u);
    for (const auto& outside : {cut(7, 0, 9, 9), cut(0, -9, 9, -2), cut(4, 1, 3, 1), cut(NAN, NAN, NAN, NAN)})
        EXPECT_TRUE(outside.empty());
    EXPECT_TRUE(run("Extract", {imageOf(Color, cv::Mat()), value(Type::Region2(0, 0, 1, 1))}).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.extract").size(), 5u);
}

} // namespace
