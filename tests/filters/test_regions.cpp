#include "corvale/data/dataregion2.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <climits>
#include <cmath>

using namespace support;
using namespace ZR::Corvale;

namespace {

using support::Color; // not the class

// What is known of a label, found out pixel by pixel.
struct Region
{
    int pixels = 0, minX = 65535, minY = 65535, maxX = 0, maxY = 0;
    float sumX = 0, sumY = 0;
};

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
    std::map<int, Region> regions;
    for (int y = 0; y < labels.rows; ++y)
        for (int x = 0; x < labels.cols; ++x)
            if (const int label = labels.at<int>(y, x); label > 0 && label <= int(labels.total())) {
                Region& region = regions[label];
                region = {region.pixels + 1,        std::min(region.minX, x), std::min(region.minY, y),
                          std::max(region.maxX, x), std::max(region.maxY, y), region.sumX + float(x),
                          region.sumY + float(y)};
            }
    Values boxes;
    std::vector<Type::Vector2> centres;
    for (const auto& [label, region] : regions) {
        if (label < int(labels.total()) && region.maxX > region.minX)
            boxes.push_back(value(Type::Region2(region.minX, region.minY, region.maxX, region.maxY)));
        centres.emplace_back(region.sumX / float(region.pixels), region.sumY / float(region.pixels));
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
            const auto region = regions.find(labels.at<int>(y, x));
            return region != regions.end() && suits(region->second) ? region->first : 0;
        });
    };
    for (const int min : {INT_MIN, 1, 2, 40})
        for (const int max : {-1, 1, 3, INT_MAX})
            expectKept(run.only("Density", {in, value(min), value(max)}),
                       [&](const Region& region) { return region.pixels >= min && region.pixels <= max; });
    for (const float min : {-INFINITY, 0.0f, 0.5f, 2.0f, NAN})
        for (const float max : {0.0f, 2.0f, INFINITY})
            expectKept(run.only("Ratio", {in, value(min), value(max)}), [&](const Region& region) {
                const auto width = float(region.maxX - region.minX),
                           height = float(region.maxY - region.minY);
                const float ratio = width > 0 && height != 0 ? width / height : 0.0f;
                return ratio >= min && ratio <= max;
            });
}

TEST(LabelFilters, EqualTheLiteralEvaluation)
{
    FilterRunner run;
    forEachShape([&](const Shape& shape) {
        for (const int length : {1, 3, 40})
            for (const int labels : {2, 5, shape.size.area() + 2})
                expectLiteralRegions(run, randomLabels(shape, length, labels));
    });
    expectLiteralRegions(run, randomLabels(Shape{{65, 3}, false}, 3, 5));  // a word of one pixel
    expectLiteralRegions(run, cv::Mat(331, 601, CV_32SC1, cv::Scalar(3))); // float sums that are rounded
    EXPECT_EQ(run.log.count(), 0u);
    for (const cv::Size size : {cv::Size(65536, 1), cv::Size(1, 65536)}) {
        const auto in = imageOf(Label, cv::Mat(size, CV_32SC1));
        EXPECT_TRUE(run.refuses("BoundingBox", {in})); // more than 16 bits count
        EXPECT_TRUE(run.refuses("Gravity", {in}));
        EXPECT_TRUE(run.refuses("Ratio", {in, value(0.0f), value(1.0f)}));
    }
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
        const auto top = std::trunc(point.y()), bottom = std::trunc(corner.y());
        const auto left = std::trunc(point.x()), right = std::trunc(corner.x());
        const auto onArm = [](int i, float centre, int last) {
            return i >= std::trunc(centre - 3) && i < std::trunc(centre + 4) && i < last;
        };
        const auto colour = [word](int component) { return word == component || word == 4 ? 255 : 0; };
        const bool numbers = point == point && (isPoint || corner == corner);
        const auto data = value(Values{nullptr, value(1), isPoint ? value(point) : value(region)});
        const auto result =
            run.only("Draw", {imageOf(Color, image), data, isNamed ? value(words[word]) : value(i)});
        expectImage(result, size, Color, true, [&](int y, int x, int c) -> int {
            const bool arms = (y == top && onArm(x, point.x(), size.width - 1)) ||
                              (x == left && onArm(y, point.y(), size.height - 1));
            const bool frame = ((y == top || y == bottom) && x >= left && x < right) ||
                               ((x == left || x == right) && y >= top && y < bottom);
            const bool centre = isPoint && x == left && y == top;
            const bool marked = numbers && (isPoint ? arms : frame);
            return numbers && centre ? 255 : marked ? colour(c) : at(before, y, x, c);
        });
    }
}

TEST(Draw, LeavesACopyUnmarkedAndRefusesQuietlyWhatIsNoColour)
{
    FilterRunner run;
    const cv::Mat image(3, 4, CV_8UC3, cv::Scalar(1, 2, 3)), gray(3, 4, CV_8UC1);
    const auto copy = run.only("Draw", {imageOf(Color, image), value(Type::Vector2(1, 1)), nullptr});
    EXPECT_NE(dataToCvMat(copy).data, image.data);
    EXPECT_EQ(cv::norm(dataToCvMat(copy), image, cv::NORM_INF), 0);
    EXPECT_TRUE(run("Draw", {imageOf(Gray, gray), value(Values()), nullptr}).empty());
    EXPECT_EQ(run.log.count(), 0u);
    EXPECT_TRUE(run.refuses("Draw", {imageOf(Color, gray), value(Values()), nullptr}));
}

TEST(Extract, CutsOutWhatTheRegionCovers)
{
    FilterRunner run;
    const cv::Mat image = Shape{{7, 5}, true}.random(CV_8UC3);
    const auto in = imageOf(Color, image);
    const auto cut = run.only("Extract", {in, value(Type::Region2(1.5f, -9, 1e9f, 2))});
    const Type::ColorImage& part = *static_cast<Type::ColorImage*>(*cut);
    EXPECT_EQ(cv::norm(part.mat, image(cv::Rect(2, 0, 5, 3)), cv::NORM_INF), 0);
    EXPECT_EQ(part.name, "camera");
    EXPECT_EQ(part.fovX, 1.5f * 5 / 7);
    EXPECT_TRUE(run("Extract", {in, value(boost::shared_ptr<Type::Region2>())}).empty());
    EXPECT_EQ(run.log.count(), 0u);
    const Type::Region2 outsides[] = {{7, 0, 9, 9}, {0, -9, 9, -2}, {4, 1, 3, 1}, {NAN, NAN, NAN, NAN}};
    for (const auto& outside : outsides)
        EXPECT_TRUE(run.refuses("Extract", {in, value(outside)}));
    EXPECT_TRUE(run.refuses("Extract", {imageOf(Color, cv::Mat()), value(Type::Region2(0, 0, 1, 1))}));
}

} // namespace
