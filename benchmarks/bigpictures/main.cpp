// Do the filters that count pixels and regions keep their pace, and their results, on pictures of up to
// 20,000 x 20,000 pixels? Prints processor time for a pixel at three sizes, and how they grow. Exit code 1 if
// a pixel of the largest picture costs more than four times one of the smallest, or a result is wrong.
//
// The picture holds squares of 10 pixels, 20 apart; its last quarter single pixels, 2 apart: as many regions
// as a picture can have. It takes some 6 gigabytes.

#include "corvale/filter/filter.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filters/builtinfilters.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/values.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <opencv2/core.hpp>

#include <sys/resource.h>

#include <ctime>
#include <iomanip>
#include <iostream>
#include <map>

using namespace ZR::Corvale;
using Filters::Values;

namespace {

constexpr int smallest = 5000, largest = 20000;
constexpr double greatestGrowth = 4; // beyond caches and warm memory; what takes quadratic time grows by 16

struct Picture
{
    explicit Picture(int side)
        : rowsOfSquares(side * 3 / 4 / 20 * 20),
          squares(1LL * rowsOfSquares / 20 * side / 20),
          pixels(1LL * (side - rowsOfSquares) / 2 * side / 2)
    {
        cv::Mat matrix = cv::Mat::zeros(side, side, CV_8UC1);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                if (y < rowsOfSquares ? x % 20 < 10 && y % 20 < 10 : x % 2 + y % 2 == 0)
                    matrix.ptr(y)[x] = 255;
        value = cvMatToData(matrix, DataType::BinaryImage);
    }

    const int rowsOfSquares;
    const long long squares, pixels; // how many of each
    boost::shared_ptr<Data> value;
};

// The greatest label, or the number of pixels that are on.
long long count(const boost::shared_ptr<Data>& value)
{
    if (const Values* values = Filters::payload<Values>(value))
        return static_cast<long long>(values->size());
    const cv::Mat matrix = dataToCvMat(value);
    double greatest = 0;
    if (matrix.depth() == CV_32S)
        cv::minMaxLoc(matrix, nullptr, &greatest);
    return matrix.depth() == CV_32S ? static_cast<long long>(greatest) : cv::countNonZero(matrix.reshape(1));
}

class Run
{
public:
    explicit Run(int side) : _side(side)
    {
        for (const auto& filter : Filters::makeBuiltinFilters())
            _filters[filter->getName()] = filter;
    }

    // The first output of a filter, whose regions or pixels that are on have to be as many as expected.
    boost::shared_ptr<Data> operator()(const std::string& name, const Values& inputs, long long expected)
    {
        const StringHash process("process");
        const std::clock_t begin = std::clock();
        const Values outputs = _filters.at(name)->applyFilter(inputs, process, process, 0);
        nanoseconds[name] = 1e9 * static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC / _side / _side;
        if (outputs.empty() || count(outputs[0]) != expected) {
            std::cout << name << " at " << _side << ": " << (outputs.empty() ? -1 : count(outputs[0]))
                      << " instead of " << expected << "\n";
            right = false;
        }
        return outputs.empty() ? nullptr : outputs[0];
    }

    std::map<std::string, double> nanoseconds; // for a pixel, by filter
    bool right = true;

private:
    const int _side;
    std::map<std::string, boost::shared_ptr<Filter>> _filters;
};

boost::shared_ptr<Data> number(int value)
{
    return boost::make_shared<Data>(value);
}

Run measure(int side)
{
    const Picture picture(side);
    const long long all = 1LL * side * side, squares = picture.squares, pixels = picture.pixels;
    Run run(side);
    run("Invert", {picture.value}, all - 100 * squares - pixels);
    run("Erosion", {picture.value, number(3)},
        64 * squares + 8 * (side / 20 + picture.rowsOfSquares / 20) + 1);
    run("ScaleDown", {picture.value, number(2)}, 25 * squares + pixels);
    const auto regions = run("Labelize", {picture.value, nullptr}, squares + pixels);
    const auto large = run("Density", {regions, number(2), number(1000)}, squares);
    run("Ratio", {large, boost::make_shared<Data>(0.5f), boost::make_shared<Data>(2.0f)}, squares);
    run("Geodesic", {large}, squares);
    run("BoundingBox", {large}, squares);
    run("Gravity", {large}, squares);
    return run;
}

} // namespace

int main()
{
    rk::log::setLevel(0);
    std::map<int, Run> runs;
    bool right = true;
    for (int side = smallest; side <= largest; side *= 2)
        right = runs.emplace(side, measure(side)).first->second.right && right;

    std::cout << std::fixed << std::setprecision(2) << std::setw(14) << "ns / pixel";
    for (const auto& run : runs)
        std::cout << std::setw(8) << run.first;
    std::cout << std::setw(9) << "growth\n";
    for (const auto& [filter, least] : runs.begin()->second.nanoseconds) {
        std::cout << std::setw(14) << filter;
        for (const auto& run : runs)
            std::cout << std::setw(8) << run.second.nanoseconds.at(filter);
        const double growth = runs.rbegin()->second.nanoseconds.at(filter) / least;
        std::cout << std::setw(8) << growth << (growth > greatestGrowth ? "  over 4\n" : "\n");
        right = right && growth <= greatestGrowth;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::cout << "most memory: " << usage.ru_maxrss / 1048576.0 << " GiB\n";
    return right ? 0 : 1;
}
