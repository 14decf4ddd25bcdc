// Does a process keep its rate, how late does each computation begin, and what does waiting for it cost?

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "engine/peers.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using ZR::Corvale::Data;
using Clock = std::chrono::steady_clock;

struct Rate
{
    double error;   // per cent
    double lateP50; // microseconds after the end of the period
    double lateP99;
    double cpu; // per cent of a core
};

// One worker, one process that has something to do at each look, ten seconds.
Rate keepRate(double hertz)
{
    ZR::Corvale::Corvale engine(1);
    std::mutex mutex;
    std::vector<Clock::time_point> times;
    times.reserve(static_cast<std::size_t>(11 * hertz));
    engine.loadProgram("process p(Identity, 3, " + std::to_string(hertz) +
                       ") { pulse tick[1]; in <= this:tick; out => out }");
    engine.createEvent("p:out", [&](boost::shared_ptr<Data>) {
        const std::lock_guard<std::mutex> guard(mutex);
        times.push_back(Clock::now());
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const double before = peers::cpuSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(10));
    const double cpu = peers::cpuSeconds() - before;
    engine.stopScheduler();

    const auto microseconds = [](Clock::duration time) {
        return std::chrono::duration<double, std::micro>(time).count();
    };
    const double period = 1e6 / hertz;
    std::vector<double> late;
    for (std::size_t i = 1; i < times.size(); ++i)
        late.push_back(microseconds(times[i] - times[i - 1]) - period);
    const double mean = microseconds(times.back() - times.front()) / static_cast<double>(late.size());
    std::sort(late.begin(), late.end());
    return {100.0 * std::abs(period / mean - 1.0), late[late.size() / 2], late[late.size() * 99 / 100],
            100.0 * cpu / 10.0};
}

// The table takes each counter as a figure of its own.
void rate(benchmark::State& state)
{
    for (auto _ : state) {
        const Rate kept = keepRate(static_cast<double>(state.range(0)));
        state.counters["/error"] = kept.error;      // per cent
        state.counters["/late_p50"] = kept.lateP50; // microseconds
        state.counters["/late_p99"] = kept.lateP99;
        state.counters["/cpu"] = kept.cpu; // per cent of a core
    }
}
BENCHMARK(rate)->Arg(100)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
