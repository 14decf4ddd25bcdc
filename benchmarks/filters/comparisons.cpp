#include "filters/comparisons.h"

#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/dataregion2.h"
#include "corvale/filter/filter.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filters/builtinfilters.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/kinds.h"
#include "corvale/filters/knnclassification.h"
#include "corvale/filters/values.h"
#include "corvale/runtime/stringhash.h"

#include <boost/filesystem.hpp>
#include <opencv2/imgproc.hpp>

#include <map>

namespace {

using namespace ZR::Corvale;
using Filters::Values;
using Task = Comparison::Task;

constexpr bool AtBound = true;

template <typename Content>
boost::shared_ptr<Data> value(const Content& content)
{
    return boost::make_shared<Data>(content);
}

boost::shared_ptr<Data> colour(const cv::Mat& image)
{
    return cvMatToData(image, DataType::ColorImage);
}

boost::shared_ptr<Data> grey(const cv::Mat& image)
{
    return cvMatToData(image, DataType::GrayscaleImage);
}

boost::shared_ptr<Data> mask(const cv::Mat& image)
{
    return cvMatToData(image, DataType::BinaryImage);
}

boost::shared_ptr<Data> depth(const cv::Mat& image)
{
    return cvMatToData(image, DataType::DepthImage);
}

boost::shared_ptr<Data> labels(const cv::Mat& image)
{
    return cvMatToData(image, DataType::LabelImage);
}

std::size_t imageBytes(const Values& values)
{
    std::size_t bytes = 0;
    for (const auto& value : values)
        if (value && Filters::visitImageClass(value->getType(), [](auto) {})) {
            const cv::Mat image = dataToCvMat(value);
            bytes += image.total() * image.elemSize();
        }
    return bytes;
}

// What a node does: the values are ready, the result is new and dropped in the end. What the filter keeps
// goes by the name.
Task node(const std::string& name, const boost::shared_ptr<Filter>& filter, const Values& inputs)
{
    return [filter, inputs, process = StringHash(name), scope = StringHash("scope")] {
        filter->applyFilter(inputs, process, scope, 0);
    };
}

// The table under construction.
class Comparisons
{
public:
    using Targets = std::pair<double, double>; // at 640 x 480 and beyond

    Comparisons(const cv::Size& size, std::vector<Comparison>& rows)
        : _large(size.width > 640),
          _suffix(", " + std::to_string(size.width) + " x " + std::to_string(size.height)),
          _rows(rows)
    {
    }

    /// A filter by its name in the engine; its memory lasts from call to call.
    void add(const std::string& name, const Targets& targets, const std::string& filter, const Values& inputs,
             const Task& peer, bool atBound = false, const Task& less = Task())
    {
        add(name, targets, builtinFilter(filter), inputs, peer, atBound, less);
    }
    void add(const std::string& name, double target, const std::string& filter, const Values& inputs,
             const Task& peer, bool atBound = false, const Task& less = Task())
    {
        add(name, Targets(target, target), filter, inputs, peer, atBound, less);
    }
    void add(const std::string& name, const Targets& targets, const boost::shared_ptr<Filter>& filter,
             const Values& inputs, const Task& peer, bool atBound = false, const Task& less = Task())
    {
        const Task ours = node(name + _suffix, filter, inputs);
        for (int i = 0; i < CallsBefore; ++i)
            ours();
        const StringHash process(name + _suffix), scope("traffic");
        const std::size_t traffic =
            imageBytes(inputs) + imageBytes(filter->applyFilter(inputs, process, scope, 0));
        _rows.push_back({name + _suffix, ours, peer, less, traffic, target(targets), atBound});
    }
    /// Any other operation.
    void add(const std::string& name, const Targets& targets, const Task& ours, std::size_t traffic,
             const Task& peer, bool atBound = false)
    {
        _rows.push_back({name + _suffix, ours, peer, Task(), traffic, target(targets), atBound});
    }

private:
    static boost::shared_ptr<Filter> builtinFilter(const std::string& name)
    {
        static const auto filters = [] {
            std::map<std::string, boost::shared_ptr<Filter>> filters;
            static MemoryManager memory;
            for (const auto& filter : Filters::makeBuiltinFilters()) {
                filter->bindMemoryManager(&memory);
                filters[filter->getName()] = filter;
            }
            return filters;
        }();
        return filters.at(name);
    }
    double target(const Targets& targets) const { return _large ? targets.second : targets.first; }

    static constexpr int CallsBefore = 20; // fill what filters keep, e.g. windows

    const bool _large;
    const std::string _suffix;
    std::vector<Comparison>& _rows;
};

void addArithmetic(Comparisons& rows, const Pictures& p)
{
    const Values colours{colour(p.colour), colour(p.colourBefore)};
    const Values greys{grey(p.grey), grey(p.greyBefore)};
    const auto both = [&p](auto operation) {
        const auto on = [operation](const cv::Mat& left, const cv::Mat& right) -> Task {
            return [=, out = cv::Mat()]() mutable { operation(left, right, out); };
        };
        return std::make_pair(on(p.colour, p.colourBefore), on(p.grey, p.greyBefore));
    };
    const auto add = both([](const auto& a, const auto& b, cv::Mat& out) { cv::add(a, b, out); });
    rows.add("Add, colour", 1.0, "Add", colours, add.first, AtBound);
    rows.add("Add, grey", 1.0, "Add", greys, add.second, AtBound);
    const auto sub = both([](const auto& a, const auto& b, cv::Mat& out) { cv::subtract(a, b, out); });
    rows.add("Sub, colour", 1.0, "Sub", colours, sub.first, AtBound);
    rows.add("Sub, grey", 1.0, "Sub", greys, sub.second, AtBound);
    rows.add(
        "Sub, depth", 1.0, "Sub", {depth(p.depth), depth(p.depthNearer)},
        [&p, out = cv::Mat()]() mutable { cv::subtract(p.depth, p.depthNearer, out); }, AtBound);
    const auto min = both([](const auto& a, const auto& b, cv::Mat& out) { cv::min(a, b, out); });
    rows.add("Min, colour", 1.0, "Min", colours, min.first, AtBound);
    rows.add("Min, grey", 1.0, "Min", greys, min.second, AtBound);
    const auto max = both([](const auto& a, const auto& b, cv::Mat& out) { cv::max(a, b, out); });
    rows.add("Max, colour", 1.0, "Max", colours, max.first, AtBound);
    rows.add("Max, grey", 1.0, "Max", greys, max.second, AtBound);
    const auto product =
        both([](const auto& a, const auto& b, cv::Mat& out) { cv::multiply(a, b, out, 1.0 / 255.0); });
    rows.add("Multiply, colour", 0.30, "Multiply", colours, product.first);
    rows.add("Multiply, grey by 3", 0.10, "Multiply", {grey(p.grey), value(3)},
             [&p, out = cv::Mat()]() mutable { cv::multiply(p.grey, cv::Scalar(3), out); });
}

void addMasks(Comparisons& rows, const Pictures& p)
{
    rows.add("Invert, colour", 0.53, "Invert", {colour(p.colour)},
             [&p, out = cv::Mat()]() mutable { cv::subtract(cv::Scalar::all(255), p.colour, out); });
    rows.add("Invert, binary", 0.5, "Invert", {mask(p.texture)},
             [&p, out = cv::Mat(p.size, CV_8U)]() mutable { out.setTo(255, p.texture); });
    rows.add("Threshold, grey", 0.7, "Threshold", {grey(p.grey), value(100)},
             [&p, out = cv::Mat()]() mutable { cv::compare(p.grey, 100, out, cv::CMP_GT); });
    rows.add("Threshold, depth", 0.45, "Threshold", {depth(p.depth), value(3000)},
             [&p, out = cv::Mat()]() mutable { cv::compare(p.depth, 3000, out, cv::CMP_GT); });
    rows.add("Threshold, colour", 0.30, "Threshold", {colour(p.colour), value(100)},
             [&p, grey = cv::Mat(), out = cv::Mat()]() mutable {
                 cv::cvtColor(p.colour, grey, cv::COLOR_RGB2GRAY);
                 cv::threshold(grey, out, 100, 255, cv::THRESH_BINARY);
             });
    const auto copyTo = [&p](const cv::Mat& image) -> Task {
        return [image, &p, out = cv::Mat()]() mutable { image.copyTo(out, p.texture); };
    };
    rows.add("Mask, colour", 0.18, "Mask", {mask(p.texture), colour(p.colour)}, copyTo(p.colour));
    rows.add("Mask, grey", 0.70, "Mask", {mask(p.texture), grey(p.grey)}, copyTo(p.grey));
    rows.add("Mask, depth", 0.70, "Mask", {mask(p.texture), depth(p.depth)}, copyTo(p.depth));
    rows.add("Otsu", 0.95, "Otsu", {grey(p.grey)},
             [&p, out = cv::Mat()]() mutable { cv::threshold(p.grey, out, 0, 255, cv::THRESH_OTSU); });
}

void addMemories(Comparisons& rows, const Pictures& p)
{
    const auto average = [](const cv::Mat& image) -> Task {
        cv::Mat sum;
        image.convertTo(sum, CV_32F);
        return [image, sum]() mutable { cv::accumulateWeighted(image, sum, 0.125); };
    };
    rows.add("Accum, colour", 0.75, "Accum", {colour(p.colour), value(0.125f)}, average(p.colour));
    rows.add("Accum, depth", 0.9, "Accum", {depth(p.depth), value(0.125f)}, average(p.depth));
    const auto mean = [&p](int size) -> Task {
        return [&p, size, sum = cv::Mat(p.size, CV_32FC3), out = cv::Mat()]() mutable {
            sum.setTo(0);
            for (int i = 0; i < size; ++i)
                cv::accumulate(i % 2 ? p.colour : p.colourBefore, sum);
            sum.convertTo(out, CV_8U, 1.0 / size);
        };
    };
    for (const int size : {5, 15})
        rows.add("SlidingWindow of " + std::to_string(size) + ", colour", {0.17, 0.12}, "SlidingWindow",
                 {colour(p.colour), value(size)}, mean(5));
}

void addNeighbourhoods(Comparisons& rows, const Pictures& p)
{
    for (const int size : {3, 5}) {
        const std::string side = std::to_string(size) + " x " + std::to_string(size);
        const cv::Mat square = cv::Mat::ones(size, size, CV_8U);
        rows.add("Dilation, grey, " + side, 1.0, "Dilation", {grey(p.grey), value(size)},
                 [&p, square, out = cv::Mat()]() mutable { cv::dilate(p.grey, out, square); });
        rows.add("Dilation, depth, " + side, 1.0, "Dilation", {depth(p.depth), value(size)},
                 [&p, square, out = cv::Mat()]() mutable { cv::dilate(p.depth, out, square); });
        rows.add("Erosion, binary, " + side, 1.0, "Erosion", {mask(p.texture), value(size)},
                 [&p, square, out = cv::Mat()]() mutable { cv::erode(p.texture, out, square); });
        rows.add("SNN, " + side,
                 size == 3 ? Comparisons::Targets(0.36, 0.75) : Comparisons::Targets(0.15, 0.28), "SNN",
                 {grey(p.grey), value(size)},
                 [&p, size, out = cv::Mat()]() mutable { cv::medianBlur(p.grey, out, size); });
    }
    const auto resize = [&p](const cv::Mat& image) -> Task {
        return [image, &p, out = cv::Mat()]() mutable {
            cv::resize(image, out, p.size / 2, 0.0, 0.0, cv::INTER_NEAREST);
        };
    };
    rows.add("ScaleDown by 2, grey", 0.10, "ScaleDown", {grey(p.grey), value(2)}, resize(p.grey));
    rows.add("ScaleDown by 2, colour", 0.20, "ScaleDown", {colour(p.colour), value(2)}, resize(p.colour));
}

void addRegions(Comparisons& rows, const Pictures& p)
{
    const auto components = [](const cv::Mat& mask) -> Task {
        return [mask, out = cv::Mat()]() mutable { cv::connectedComponents(mask, out, 4); };
    };
    const auto statistics = [](const cv::Mat& mask) -> Task {
        return [mask, out = cv::Mat(), stats = cv::Mat(), centres = cv::Mat()]() mutable {
            cv::connectedComponentsWithStats(mask, out, stats, centres, 4);
        };
    };
    const auto grown = [](const cv::Mat& mask) -> Task {
        return [mask, large = cv::Mat(), out = cv::Mat()]() mutable {
            cv::dilate(mask, large, cv::Mat());
            cv::connectedComponents(large, out, 4);
        };
    };
    struct
    {
        const char* name;
        const cv::Mat& mask;
        double target;
    } const masks[] = {{"sparse", p.movement, 0.15}, {"blobs", p.blobs, 0.15}, {"dense", p.texture, 0.20}};
    for (const auto& [name, image, target] : masks) {
        rows.add(std::string("Labelize, ") + name, target, "Labelize", {mask(image), nullptr},
                 components(image));
        rows.add(std::string("ImprovedLabelize, ") + name, 0.25, "ImprovedLabelize",
                 {mask(image), nullptr, value(3), value(0.0f), value(1.0f)}, grown(image));
    }
    struct
    {
        const char* name;
        const cv::Mat &mask, &labels;
    } const regions[] = {{", sparse", p.movement, p.people}, {", dense", p.texture, p.grains}};
    for (const auto& [name, image, regions] : regions) {
        for (const std::string filter : {"BoundingBox", "Gravity"})
            rows.add(filter + name, 0.05, filter, {labels(regions)}, statistics(image), false,
                     components(image));
        rows.add(std::string("Density") + name, 0.06, "Density", {labels(regions), value(20), value(1 << 20)},
                 statistics(image));
        rows.add(std::string("Ratio") + name, 0.06, "Ratio", {labels(regions), value(0.5f), value(2.0f)},
                 statistics(image));
    }
    rows.add("Geodesic", 0.40, "Geodesic", {labels(p.people)},
             [away = cv::Mat(p.people == 0), distances = cv::Mat(), out = cv::Mat()]() mutable {
                 cv::distanceTransform(away, distances, out, cv::DIST_L1, cv::DIST_MASK_5);
             });
}

void addColours(Comparisons& rows, const Pictures& p)
{
    rows.add("Luminance", 0.50, "Luminance", {colour(p.colour)},
             [&p, out = cv::Mat()]() mutable { cv::cvtColor(p.colour, out, cv::COLOR_RGB2GRAY); });
    rows.add("Saturation", 0.13, "Saturation", {colour(p.colour)},
             [&p, out = cv::Mat()]() mutable { cv::cvtColor(p.colour, out, cv::COLOR_RGB2HSV); });
    rows.add(
        "Hue", 0.5, "Hue", {colour(p.colour), value(120)},
        [&p, table = cv::Mat(1, 256, CV_8U), hsv = cv::Mat(), hue = cv::Mat(), out = cv::Mat()]() mutable {
            cv::cvtColor(p.colour, hsv, cv::COLOR_RGB2HSV);
            cv::extractChannel(hsv, hue, 0);
            cv::LUT(hue, table, out);
        });
    const auto histogram = [](const cv::Mat& image) -> Task {
        return [image, counts = cv::Mat()]() mutable {
            const int size = 256;
            const float range[] = {0, 256};
            const float* ranges = range;
            for (int channel = 0; channel < image.channels(); ++channel)
                cv::calcHist(&image, 1, &channel, cv::Mat(), counts, 1, &size, &ranges);
        };
    };
    rows.add("Histogram, grey", 0.55, "Histogram", {grey(p.grey)}, histogram(p.grey));
    rows.add("Histogram, colour", 0.48, "Histogram", {colour(p.colour)}, histogram(p.colour));
    rows.add(
        "toColorImage, depth", {0.35, 0.5},
        [image = Type::DepthImage(p.depth)]() mutable { image.toColorImage(); }, p.depth.total() * 5,
        [&p, level = cv::Mat(), out = cv::Mat()]() mutable {
            p.depth.convertTo(level, CV_8U, 255.0 / 4000.0);
            cv::applyColorMap(level, out, cv::COLORMAP_JET);
        });
}

void addCopies(Comparisons& rows, const Pictures& p)
{
    const auto copyTo = [](const cv::Mat& image) -> Task {
        return [image, out = cv::Mat()]() mutable { image.copyTo(out); };
    };
    const auto width = static_cast<float>(p.size.width), height = static_cast<float>(p.size.height);
    Values boxes;
    for (const float place : {0.1f, 0.3f, 0.5f, 0.7f})
        boxes.push_back(value(
            Type::Region2(place * width, place * height, (place + 0.1f) * width, (place + 0.2f) * height)));
    rows.add("Draw of 4 boxes", 1.0, "Draw", {colour(p.colour), value(boxes), nullptr}, copyTo(p.colour),
             AtBound);
    const Type::Region2 middle(width / 4, height / 4, width * 3 / 4 - 1, height * 3 / 4 - 1);
    const cv::Rect same(p.size.width / 4, p.size.height / 4, p.size.width / 2, p.size.height / 2);
    const std::size_t bytes = p.colour.total() * p.colour.elemSize();
    const auto extract = [image = Type::ColorImage(p.colour), middle] { image.extract(middle); };
    rows.add("Extract of the middle", {1.0, 1.0}, extract, bytes / 2, copyTo(p.colour(same)), AtBound);
    const auto clone = [image = Type::ColorImage(p.colour)] { image.clone(); };
    rows.add("clone, colour", {1.0, 1.0}, clone, 2 * bytes, copyTo(p.colour), AtBound);
}

// A database of descriptors at random, in the form that the filter reads.
boost::shared_ptr<Filter> classifier(const cv::Mat& descriptors)
{
    const auto path = boost::filesystem::temp_directory_path() / boost::filesystem::unique_path();
    {
        boost::filesystem::ofstream file(path);
        file << "<data><properties><type>knn</type><size>" << descriptors.cols << "</size><count>"
             << descriptors.rows << "</count></properties><descriptors>";
        for (int i = 0; i < descriptors.rows; ++i) {
            file << "<d>" << i % 10;
            for (int j = 0; j < descriptors.cols; ++j)
                file << ' ' << descriptors.at<float>(i, j);
            file << "</d>";
        }
        file << "</descriptors></data>";
    }
    const auto filter = boost::make_shared<Filters::KNNClassification>(path.string());
    boost::filesystem::remove(path);
    return filter;
}

// Squares of 8 x 8 pixels, one a row.
cv::Mat patches(const cv::Mat& image, int count)
{
    cv::Mat descriptors(count, 64, CV_32F);
    cv::RNG places(1);
    for (int i = 0; i < count; ++i) {
        const cv::Rect square(places.uniform(0, image.cols - 8), places.uniform(0, image.rows - 8), 8, 8);
        cv::Mat row = descriptors.row(i).reshape(1, 8);
        image(square).convertTo(row, CV_32F);
    }
    return descriptors;
}

} // namespace

std::vector<Comparison> pixelComparisons(const Pictures& pictures)
{
    std::vector<Comparison> comparisons;
    Comparisons rows(pictures.size, comparisons);
    addArithmetic(rows, pictures);
    addMasks(rows, pictures);
    addMemories(rows, pictures);
    addNeighbourhoods(rows, pictures);
    addRegions(rows, pictures);
    addColours(rows, pictures);
    addCopies(rows, pictures);
    return comparisons;
}

std::vector<Comparison> featureComparisons(const Pictures& pictures)
{
    const cv::Mat descriptors = patches(pictures.greyBefore, 10000);
    const cv::Mat query = patches(pictures.grey, 1);
    const auto filter = classifier(descriptors);
    Values elements;
    for (int i = 0; i < query.cols; ++i)
        elements.push_back(value(query.at<float>(i)));
    std::vector<Comparison> comparisons;
    Comparisons rows(descriptors.size(), comparisons);
    for (const int k : {1, 5})
        rows.add("KNN, k = " + std::to_string(k), {0.40, 0.40}, filter, {value(elements), value(k)},
                 [=, distances = cv::Mat(), indices = cv::Mat()]() mutable {
                     cv::batchDistance(query, descriptors, distances, CV_32F, indices, cv::NORM_L2SQR, k);
                 });
    return comparisons;
}
