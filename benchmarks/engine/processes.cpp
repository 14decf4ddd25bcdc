// What do 1 to 1,000 processes cost under one scheduler: idle at 10 Hz, and building them?

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <sys/resource.h>

#include <chrono>
#include <thread>

namespace {

using ZR::Corvale::Data;

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

void addProcesses(ZR::Corvale::Corvale& engine, int count, float frequency)
{
    engine.createSource("in");
    engine.setData("in", boost::make_shared<Data>(1));
    for (int i = 0; i < count; ++i)
        engine.createProcess("p" + std::to_string(i), "Identity", {{"in", "in"}}, {{"out", "out"}}, {}, {}, 3,
                             frequency);
}

// Per cent of one core over two seconds in which no source changes.
void idle(benchmark::State& state, ZR::Corvale::Corvale& engine)
{
    engine.startScheduler();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (auto _ : state) {
        const double before = cpuSeconds();
        std::this_thread::sleep_for(std::chrono::seconds(2));
        state.counters["ns"] = 100.0 * (cpuSeconds() - before) / 2.0; // per cent of a core, for the table
    }
}

// Built first and started then: their periods end together.
void idleProcesses(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    engine.stopScheduler();
    addProcesses(engine, static_cast<int>(state.range(0)), 10.0f);
    idle(state, engine);
}
BENCHMARK(idleProcesses)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

// Built while the worker runs: their periods end at moments of their own, a thousand of them ten thousand
// times a second, and the worker sleeps in between.
void idleSpreadProcesses(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    addProcesses(engine, static_cast<int>(state.range(0)), 10.0f);
    idle(state, engine);
}
BENCHMARK(idleSpreadProcesses)->Arg(100)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

void buildProcesses(benchmark::State& state)
{
    for (auto _ : state) {
        ZR::Corvale::Corvale engine(0);
        addProcesses(engine, static_cast<int>(state.range(0)), 10.0f);
    }
    state.counters["ns"] = benchmark::Counter(static_cast<double>(state.iterations()) *
                                                  static_cast<double>(state.range(0)) * 1e-9,
                                              benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(buildProcesses)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
