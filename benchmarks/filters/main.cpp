// What does each filter cost beside the function of OpenCV that a user would call in its place, and beside
// memcpy of the same bytes? On real pictures, one pinned thread, three runs, the least of each.
//
// A filter is called as its node does it: with the values of its inputs ready, and its result new each time.
// OpenCV and memcpy write into buffers that are there. Exit code 1 if a target is missed. A row over target
// that says "at the speed of memcpy" waits for memory, as the peer does.

#include "filters/comparisons.h"
#include "support/pinnedthread.h"
#include "support/ratiotable.h"

#include "rk/log.h"

#include <opencv2/core/utility.hpp>

#include <cstring>
#include <exception>
#include <iomanip>
#include <iostream>

namespace {

constexpr int Runs = 3;
constexpr double SecondsPerBenchmark = 0.01;
constexpr double AtBound = 1.1; // of what memcpy takes for the same traffic
constexpr double Noise = 1.03;  // runs of one and the same function differ by as much

const std::string peerSuffix = ", peer", lessSuffix = ", part of the peer", copySuffix = ", memcpy";

void measure(const std::string& name, const Comparison::Task& task)
{
    if (task)
        benchmark::RegisterBenchmark(name.c_str(), [task](benchmark::State& state) {
            for (auto _ : state)
                task();
        })->MinTime(SecondsPerBenchmark);
}

// Copies as many bytes as a filter reads and writes together, half of them read.
Comparison::Task copying(std::size_t traffic)
{
    static std::vector<char> from(1 << 24, 1), to(1 << 24, 2);
    return [bytes = traffic / 2] {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    };
}

void printHead(std::ostream& out)
{
    out << "\n"
        << std::left << std::setw(42) << "least of three runs; microseconds" << std::right << std::setw(11)
        << "ours" << std::setw(11) << "peer" << std::setw(11) << "memcpy" << std::setw(9) << "/ memcpy"
        << std::setw(9) << "/ peer" << std::setw(10) << "at most"
        << "\n";
}

void printRow(std::ostream& out, const Comparison& comparison, RatioTable& table)
{
    const std::string& name = comparison.name;
    if (!table.has(name) || !table.has(name + peerSuffix) || !table.has(name + copySuffix))
        return;
    const double ours = table.figure(name);
    const double peer =
        table.figure(name + peerSuffix) - (comparison.less ? table.figure(name + lessSuffix) : 0.0);
    const double copy = table.figure(name + copySuffix);
    const bool atBound = ours <= copy * AtBound;
    const bool met = ours <= peer * comparison.target * Noise && (!comparison.atBound || atBound);
    out << std::left << std::setw(42) << name << std::right << std::fixed << std::setprecision(1);
    for (const double nanoseconds : {ours, peer, copy})
        out << std::setw(11) << nanoseconds / 1000.0;
    out << std::setprecision(2) << std::setw(9) << ours / copy << std::setw(9) << ours / peer;
    table.end(out, name, met, comparison.target, atBound ? ", at the speed of memcpy" : "");
}

} // namespace

int main(int argc, char** argv)
try {
    rk::log::setLevel(rk::log::Warning);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    cv::setNumThreads(1);
    const PinnedThread pinned;

    const Pictures small(PICTURES, {640, 480}), large(PICTURES, {1920, 1080});
    std::vector<Comparison> comparisons;
    for (const auto& more : {pixelComparisons(small), pixelComparisons(large), featureComparisons(small)})
        comparisons.insert(comparisons.end(), more.begin(), more.end());
    for (const Comparison& comparison : comparisons) {
        measure(comparison.name, comparison.ours);
        measure(comparison.name + peerSuffix, comparison.peer);
        measure(comparison.name + lessSuffix, comparison.less);
        measure(comparison.name + copySuffix, copying(comparison.traffic));
    }
    RatioTable table(RatioTable::Detail::TableOnly);
    for (int run = 0; run < Runs; ++run)
        benchmark::RunSpecifiedBenchmarks(&table);

    printHead(std::cout);
    for (const Comparison& comparison : comparisons)
        printRow(std::cout, comparison, table);
    return table.verdict(std::cout);
} catch (const std::exception& failure) {
    std::cerr << "bench_filters: " << failure.what() << "\n";
    return 2;
}
