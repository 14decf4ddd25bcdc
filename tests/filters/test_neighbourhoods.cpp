#include "corvale/data/truncate.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <opencv2/imgproc.hpp>

#include <climits>
#include <cmath>
#include <deque>
#include <vector>

using namespace support;
using ZR::Corvale::dataToCvMat;

namespace {

constexpr DataType Gray = DataType::GrayscaleImage;
constexpr DataType Binary = DataType::BinaryImage;
constexpr DataType Depth = DataType::DepthImage;
constexpr DataType Label = DataType::LabelImage;

int extremum(const cv::Mat& image, int y, int x, int size, bool greatest)
{
    const int radius = (size % 2 != 0 ? size : size + 1) / 2;
    int best = at(image, y, x, 0);
    for (int j = std::max(y - radius, 0); j - y <= radius && j < image.rows; ++j)
        for (int i = std::max(x - radius, 0); i - x <= radius && i < image.cols; ++i)
            best = greatest ? std::max(best, at(image, j, i, 0)) : std::min(best, at(image, j, i, 0));
    return best;
}

TEST(Morphology, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    for (const DataType kind : {Binary, Gray, Depth})
        for (const bool grows : {true, false})
            forEachShape([&](const Shape& shape) {
                const cv::Mat image = shape.random(matTypeOf(kind));
                const auto result = [&](int size) {
                    return run.only(grows ? "Dilation" : "Erosion", {imageOf(kind, image), value(size)});
                };
                for (const int size : {0, 1, 2, 3, 4, 5, 8, 15, 100, INT_MAX})
                    expectImage(result(size), image.size(), kind, true,
                                [&](int y, int x, int) { return extremum(image, y, x, size, grows); });
                for (const int negative : {-1, -2, INT_MIN})
                    EXPECT_THROW(result(negative), cv::Exception);
            });
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(ScaleDown, TakesTheNearestPixels)
{
    FilterRunner run;
    for (const DataType kind : {DataType::ColorImage, Binary, Depth, Gray, Label})
        for (const int factor : {INT_MIN, 0, 1, 2, 3, 5, INT_MAX})
            for (const cv::Size size : {cv::Size(0, 0), {1, 1}, {5, 5}, {6, 4}, {66, 6}, {130, 2}})
                for (const bool part : {false, true}) {
                    SCOPED_TRACE(testing::Message() << size << " by " << factor);
                    const cv::Mat image = Shape{size, part}.random(matTypeOf(kind));
                    const Values inputs{imageOf(kind, image), value(factor)};
                    run.log.clear();
                    if (factor > size.width || factor > size.height) {
                        EXPECT_TRUE(run("ScaleDown", inputs).empty());
                        EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.scaleDown").size(), 1u);
                        continue;
                    }
                    const auto result = run.only("ScaleDown", inputs);
                    EXPECT_EQ(result == inputs[0], factor < 1);
                    cv::Mat expected = image;
                    if (factor >= 1)
                        cv::resize(image, expected, size / factor, 0, 0, cv::INTER_NEAREST);
                    expectImage(result, expected.size(), kind, true,
                                [&](int y, int x, int c) { return at(expected, y, x, c); });
                }
}

// The scan pixel by pixel, its table of equivalences, the removal and the renumbering one entry after
// another.
cv::Mat literalLabels(const cv::Mat& image, int tolerance, int min = 0, int max = INT_MAX)
{
    cv::Mat labels(image.size(), CV_32SC1);
    std::vector<int> table(1), sizes(1);
    for (int y = 0; y < image.rows; ++y)
        for (int x = 0; x < image.cols; ++x) {
            const int value = at(image, y, x, 0);
            const auto joins = [&](int j, int i) {
                const int other = j < 0 || i < 0 ? 0 : at(image, j, i, 0);
                return value != 0 && other != 0 &&
                       (image.depth() == CV_8U ? value == other : std::abs(value - other) <= tolerance);
            };
            const bool left = joins(y, x - 1), up = joins(y - 1, x);
            const int l = left ? labels.at<int>(y, x - 1) : 0, u = up ? labels.at<int>(y - 1, x) : 0;
            int label = left ? l : u;
            if (value != 0 && !left && !up) {
                label = int(table.size());
                table.push_back(label);
                sizes.push_back(0);
            } else if (left && up) {
                const int a = table[l], b = table[u];
                table[a >= b ? l : u] = label = std::min(a, b);
            }
            ++sizes[labels.at<int>(y, x) = label];
        }
    std::vector<int> total(table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        while (table[i] != table[table[i]])
            table[i] = table[table[i]];
        total[table[i]] += sizes[i];
    }
    for (int& entry : table)
        entry = total[entry] < min || total[entry] > max ? 0 : entry;
    for (std::size_t i = 1, counter = 1; i < table.size(); ++i)
        if (const int entry = table[i]; entry > int(counter) && entry != int(++counter))
            std::replace(table.begin() + i, table.end(), entry, int(counter));
    labels.forEach<int>([&](int& label, const int*) { label = table[label]; });
    return labels;
}

void expectLabels(const boost::shared_ptr<Data>& actual, const cv::Mat& expected)
{
    EXPECT_TRUE(dataToCvMat(actual).isContinuous());
    expectImage(actual, expected.size(), Label, true,
                [&](int y, int x, int) { return expected.at<int>(y, x); });
}

cv::Mat checkers(int rows, int columns)
{
    cv::Mat result(rows, columns, CV_8UC1);
    result.forEach<uchar>([](uchar& pixel, const int* at) { pixel = (at[0] + at[1]) % 2; });
    return result;
}

// Pictures of bytes on which runs, windings and borders go wrong: noise and blobs of all densities, plateaus,
// checkerboards, combs and spirals.
std::vector<cv::Mat> pictures()
{
    std::vector<cv::Mat> result;
    for (const cv::Size size : {cv::Size(1, 1), {9, 1}, {1, 7}, {33, 17}, {70, 50}})
        for (const bool part : {false, true}) {
            const cv::Mat noise = Shape{size, part}.random(CV_8UC1);
            cv::Mat smooth;
            cv::blur(noise, smooth, cv::Size(5, 5));
            for (const int density : {0, 1, 20, 60, 100, 128, 150, 200, 254})
                result.insert(result.end(), {noise <= density, smooth <= density});
            result.insert(result.end(), {noise, noise & 3, smooth / 8});
        }
    cv::Mat comb(21, 30, CV_8UC1), spiral(41, 43, CV_8UC1, cv::Scalar(0));
    comb.forEach<uchar>([](uchar& pixel, const int* at) { pixel = at[1] % 2 == 0 || at[0] == 20; });
    for (int inset = 0; inset < 20; inset += 2) {
        cv::rectangle(spiral, {inset, inset}, {42 - inset, 40 - inset}, 255);
        spiral.at<uchar>(inset + 1, inset) = 0;
        spiral.at<uchar>(inset + 2, inset + 1) = 255; // on to the next ring
    }
    for (cv::Mat picture : {checkers(21, 30), comb, spiral})
        for (int turn = 0; turn < 4; ++turn) {
            result.push_back(picture.clone());
            cv::rotate(result.back(), picture, cv::ROTATE_90_CLOCKWISE);
        }
    return result;
}

TEST(Labelize, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    for (const cv::Mat& picture : pictures()) {
        for (const DataType kind : {Binary, Gray})
            expectLabels(run.only("Labelize", {imageOf(kind, picture), value(50)}),
                         literalLabels(picture, 0));
        cv::Mat distances;
        picture.convertTo(distances, CV_16U, 257);
        expectLabels(run.only("Labelize", {imageOf(Depth, distances), nullptr}), literalLabels(distances, 0));
        for (const int tolerance : {INT_MIN, -1, 0, 300, 10000, 65534, INT_MAX})
            expectLabels(run.only("Labelize", {imageOf(Depth, distances), value(tolerance)}),
                         literalLabels(distances, tolerance));
    }
    for (int i = 0; i < 40; ++i) { // at this density one in five winds so that a step is forgotten
        const cv::Mat winding = Shape{{200, 140}, false}.random(CV_8UC1) < 160;
        expectLabels(run.only("Labelize", {imageOf(Binary, winding), nullptr}), literalLabels(winding, 0));
    }
    EXPECT_TRUE(run("Labelize", {imageOf(Gray, cv::Mat()), nullptr}).empty());
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(Labelize, NumbersManyRegionsInTheOrderOfTheScan)
{
    const auto picture = imageOf(Binary, checkers(1000, 1501)); // minutes, were it quadratic
    const cv::Mat labels = dataToCvMat(FilterRunner().only("Labelize", {picture, nullptr}));
    int last = 0;
    for (auto label = labels.begin<int>(); label != labels.end<int>(); ++label)
        ASSERT_TRUE(*label == 0 || *label == ++last);
    EXPECT_EQ(last, 1000 * 1501 / 2);
}

TEST(ImprovedLabelize, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    for (const cv::Mat& picture : pictures())
        for (const int kernel : {0, 4})
            for (const float min : {0.0f, 0.01f, 0.3f, -1e30f, NAN})
                for (const float max : {0.0f, 0.02f, 1.0f, 1e30f}) {
                    const Values outputs = run("ImprovedLabelize", {imageOf(Gray, picture), nullptr,
                                                                    value(kernel), value(min), value(max)});
                    ASSERT_EQ(outputs.size(), 2u);
                    EXPECT_TRUE(hasOrigin(outputs[1]));
                    const cv::Mat grown =
                        dataToCvMat(run.only("Dilation", {imageOf(Gray, picture), value(kernel)}));
                    EXPECT_EQ(cv::norm(dataToCvMat(outputs[1]), grown, cv::NORM_INF), 0);
                    const float pixels = float(picture.total());
                    expectLabels(outputs[0], literalLabels(grown, 0, ZR::Corvale::truncate<int>(pixels * min),
                                                           ZR::Corvale::truncate<int>(pixels * max)));
                }
    const cv::Mat row = (cv::Mat_<uchar>(1, 8) << 9, 0, 9, 9, 0, 9, 9, 9);
    const Values outputs =
        run("ImprovedLabelize", {imageOf(Gray, row), nullptr, value(1), value(0.25f), value(1.0f)});
    expectLabels(outputs.at(0), (cv::Mat_<int>(1, 8) << 0, 0, 2, 2, 0, 3, 3, 3)); // from 2: 1 is gone
    EXPECT_EQ(run.log.count(), 0u);
}

TEST(ImprovedLabelize, GrowsWhatItCannotLabel)
{
    FilterRunner run;
    const auto make = [&run](DataType kind, const cv::Mat& image, int kernel = 4) {
        return run("ImprovedLabelize",
                   {imageOf(kind, image), nullptr, value(kernel), value(0.0f), value(1.0f)});
    };
    for (const DataType kind : {DataType::ColorImage, DataType::XYZImage}) {
        cv::Mat image(5, 9, matTypeOf(kind), cv::Scalar::all(1)), expected;
        image.row(2).setTo(cv::Scalar(7, 0, 3));
        cv::dilate(image, expected, cv::Mat::ones(5, 5, CV_8U));
        const Values outputs = make(kind, image);
        ASSERT_EQ(outputs.size(), 1u);
        EXPECT_EQ(outputs[0]->getType(), kind);
        EXPECT_EQ(cv::norm(dataToCvMat(outputs[0]), expected, cv::NORM_INF), 0);
        EXPECT_EQ(run.log.messages(rk::log::Error).back(), " [Invalid Input] -> Labelize -> ...");
    }
    EXPECT_TRUE(make(Label, cv::Mat(5, 9, CV_32SC1)).empty());
    EXPECT_TRUE(make(Gray, cv::Mat()).empty());
    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.labelize").size(), 4u);
    EXPECT_EQ(run.log.messages(rk::log::Error).back(), " [Invalid Input] -> ImprovedLabelize -> ...");
    EXPECT_THROW(make(Gray, cv::Mat(5, 9, CV_8UC1), -1), cv::Exception);
}

cv::Mat literalWaves(const cv::Mat& image)
{
    cv::Mat labels = image.clone();
    std::deque<cv::Point> queue;
    for (int y = 0; y < labels.rows; ++y)
        for (int x = 0; x < labels.cols; ++x)
            if (labels.at<int>(y, x) != 0)
                queue.push_back({x, y});
    for (; !queue.empty(); queue.pop_front())
        for (const cv::Point step : {cv::Point(-1, 0), {1, 0}, {0, -1}, {0, 1}}) {
            const cv::Point next = queue.front() + step;
            if (next.inside({{0, 0}, labels.size()}) && labels.at<int>(next) == 0) {
                labels.at<int>(next) = labels.at<int>(queue.front());
                queue.push_back(next);
            }
        }
    return labels;
}

TEST(Geodesic, EqualsTheLiteralEvaluation)
{
    FilterRunner run;
    forEachShape([&](const Shape& shape) {
        for (const int density : {0, 1, 3, 30, 128, 255}) {
            cv::Mat labels = shape.random(CV_32SC1);
            if (!labels.empty())
                labels.setTo(0, shape.random(CV_8UC1) >= density);
            expectLabels(run.only("Geodesic", {imageOf(Label, labels)}), literalWaves(labels));
        }
    });
    for (const cv::Mat& picture : pictures()) {
        const cv::Mat labels = literalLabels(picture, 0, 3, 20);
        expectLabels(run.only("Geodesic", {imageOf(Label, labels)}), literalWaves(labels));
    }
    cv::Mat far(2, 70000, CV_32SC1, cv::Scalar(0)); // farther than 16 bits tell
    far.at<int>(0, 0) = 5;
    far.at<int>(1, 69999) = 7;
    expectLabels(run.only("Geodesic", {imageOf(Label, far)}), literalWaves(far));
    EXPECT_EQ(run.log.count(), 0u);
}

} // namespace
