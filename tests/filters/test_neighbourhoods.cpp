#include "corvale/data/truncate.h"
#include "corvale/filters/spread.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <opencv2/imgproc.hpp>

#include <climits>
#include <cmath>
#include <deque>
#include <numeric>
#include <random>
#include <vector>

using namespace support;
using ZR::Corvale::dataToCvMat;
using namespace ZR::Corvale::Filters;

namespace {

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
    for (const DataType kind : {Color, Binary, Depth, Gray, Label})
        for (const int factor : {INT_MIN, 0, 1, 2, 3, 5, INT_MAX})
            forEachShape([&](const Shape& shape) {
                const cv::Mat image = shape.random(matTypeOf(kind));
                const Values inputs{imageOf(kind, image), value(factor)};
                if (factor > image.cols || factor > image.rows) {
                    EXPECT_TRUE(run("ScaleDown", inputs).empty());
                    EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter.scaleDown").size(), 1u);
                    return run.log.clear();
                }
                const auto result = run.only("ScaleDown", inputs);
                EXPECT_EQ(result == inputs[0], factor < 1);
                cv::Mat expected = image;
                if (factor >= 1)
                    cv::resize(image, expected, image.size() / factor, 0, 0, cv::INTER_NEAREST);
                expectImage(result, expected.size(), kind, true,
                            [&](int y, int x, int c) { return at(expected, y, x, c); });
            });
}

// Where this processor has the instructions.
template <InstructionSet Set>
void expectLiteralRuns(BitWord on, BitWord begins)
{
    if (Set > instructionSet())
        return;
    Flags flags;
    std::array<int, WordBits + SpareValues + 1> values;
    std::array<int, WordBits> pixels, expected;
    std::iota(values.begin(), values.end(), 1000);
    for (int i = 0, runs = 0; i < WordBits; ++i) {
        flags[i] = on >> i & 1;
        runs += begins >> i & 1;
        expected[i] = flags[i] * (1000 + runs);
    }
    EXPECT_EQ(packed(Instructions<Set>(), flags), on);
    spread(Instructions<Set>(), on, begins, values.data(), pixels.data());
    EXPECT_EQ(pixels, expected);
}

TEST(Runs, AreTheSameWithAnyInstructions)
{
    std::mt19937_64 random(1);
    const auto dense = [&random] { return random() | random(); };
    for (const BitWord on : {BitWord(0), ~BitWord(0), BitWord(random()), BitWord(dense())})
        for (const BitWord begins :
             {BitWord(0), ~BitWord(0), BitWord(random()), BitWord(dense() & dense())}) {
            expectLiteralRuns<InstructionSet::Baseline>(on, begins);
            expectLiteralRuns<InstructionSet::Avx2>(on, begins);
            expectLiteralRuns<InstructionSet::Avx512>(on, begins);
        }
}

// The scan pixel by pixel, its table of equivalences, the removal and the renumbering one entry after
// another.
cv::Mat literalLabels(const cv::Mat& image, int tolerance, int min = 0, int max = INT_MAX)
{
    cv::Mat labels(image.size(), CV_32SC1);
    std::vector<int> table(1);
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
            } else if (left && up) {
                const int a = table[l], b = table[u];
                table[a >= b ? l : u] = label = std::min(a, b);
            }
            labels.at<int>(y, x) = label;
        }
    std::vector<int> total(table.size());
    for (int& entry : table)
        while (entry != table[entry])
            entry = table[entry];
    for (const int label : cv::Mat_<int>(labels))
        ++total[table[label]];
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

// Pictures of bytes on which runs, windings and borders go wrong: noise, blobs of all densities and plateaus.
std::vector<cv::Mat> pictures()
{
    std::vector<cv::Mat> result;
    for (const cv::Size size : {cv::Size(1, 1), {9, 1}, {1, 7}, {65, 17}, {70, 50}})
        for (const bool part : {false, true}) {
            const cv::Mat noise = Shape{size, part}.random(CV_8UC1);
            cv::Mat smooth;
            cv::blur(noise, smooth, cv::Size(5, 5));
            for (const int density : {0, 1, 20, 60, 100, 128, 150, 200, 254})
                result.insert(result.end(), {noise <= density, smooth <= density});
            result.insert(result.end(), {noise, noise & 3, smooth / 8});
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
        const cv::Mat winding = Shape{{192, 140}, false}.random(CV_8UC1) < 160;
        expectLabels(run.only("Labelize", {imageOf(Binary, winding), nullptr}), literalLabels(winding, 0));
    }
    EXPECT_TRUE(run("Labelize", {imageOf(Gray, cv::Mat()), nullptr}).empty());
    EXPECT_EQ(run.log.count(), 0u);
    cv::Mat checkers(1000, 1501, CV_8UC1); // minutes, were it quadratic
    checkers.forEach<uchar>([](uchar& pixel, const int* at) { pixel = (at[0] + at[1]) % 2; });
    const cv::Mat labels = dataToCvMat(run.only("Labelize", {imageOf(Binary, checkers), nullptr}));
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
    EXPECT_EQ(run.log.count(), 0u);
    for (const DataType kind : {Color, DataType::XYZImage}) { // which grow, but get no labels
        const cv::Mat image = Shape{{9, 5}, false}.random(matTypeOf(kind));
        cv::Mat grown;
        cv::dilate(image, grown, cv::Mat::ones(5, 5, CV_8U));
        const auto out =
            run.only("ImprovedLabelize", {imageOf(kind, image), nullptr, value(4), value(0.0f), value(1.0f)});
        EXPECT_EQ(cv::norm(dataToCvMat(out), grown, cv::NORM_INF), 0);
    }
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
    const auto test = [&](const cv::Mat& labels) {
        expectLabels(run.only("Geodesic", {imageOf(Label, labels)}), literalWaves(labels));
    };
    forEachShape([&](const Shape& shape) {
        for (const int density : {0, 1, 3, 30, 128, 255}) {
            cv::Mat labels = shape.random(CV_32SC1);
            if (!labels.empty())
                labels.setTo(0, shape.random(CV_8UC1) >= density);
            test(labels);
        }
    });
    for (const cv::Mat& picture : pictures())
        test(literalLabels(picture, 0, 3, 20));
    cv::Mat far(2, 70000, CV_32SC1, cv::Scalar(0)); // farther than 16 bits tell
    far.at<int>(0, 0) = 5;
    far.at<int>(1, 69999) = 7;
    test(far);
    EXPECT_EQ(run.log.count(), 0u);
}

} // namespace
