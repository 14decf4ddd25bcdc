// What do 1 to 1,000 processes cost under one scheduler: idle at 10 Hz, and building them?

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "engine/peers.h"
#include "support/pinnedthread.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <time.h>

#include <chrono>
#include <thread>

namespace {

using ZR::Corvale::Data;

void addProcesses(ZR::Corvale::Corvale& engine, int count, float frequency,
                  std::chrono::microseconds pause = std::chrono::microseconds(0))
{
    engine.createSource("in");
    engine.setData("in", boost::make_shared<Data>(1));
    for (int i = 0; i < count; ++i) {
        engine.createProcess("p" + std::to_string(i), "Identity", {{"in", "in"}}, {{"out", "out"}}, {}, {}, 3,
                             frequency);
        if (pause.count() != 0)
            std::this_thread::sleep_for(pause);
    }
}

// Per cent of one core over two seconds in which no source changes.
void idle(benchmark::State& state, ZR::Corvale::Corvale& engine)
{
    engine.startScheduler();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (auto _ : state) {
        const double before = peers::cpuSeconds();
        std::this_thread::sleep_for(std::chrono::seconds(2));
        state.counters["ns"] =
            100.0 * (peers::cpuSeconds() - before) / 2.0; // per cent of a core, for the table
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

// Built while the worker runs, as a program that is loaded: some dozen groups of periods.
void idleLoadedProcesses(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    addProcesses(engine, static_cast<int>(state.range(0)), 10.0f);
    idle(state, engine);
}
BENCHMARK(idleLoadedProcesses)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

// The worst case: their periods end ten thousand times a second, each at a moment of its own.
void idleSpreadProcesses(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    addProcesses(engine, static_cast<int>(state.range(0)), 10.0f, std::chrono::microseconds(50));
    idle(state, engine);
}
BENCHMARK(idleSpreadProcesses)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

// What the kernel alone takes for as many sleeps.
void timedSleeps(benchmark::State& state)
{
    for (auto _ : state) {
        const double before = peers::cpuSeconds();
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        int sleeps = 0;
        for (; std::chrono::steady_clock::now() < end; ++sleeps) {
            const timespec pause{0, 40000};
            clock_nanosleep(CLOCK_MONOTONIC, 0, &pause, nullptr);
        }
        state.counters["ns"] = 1e6 * (peers::cpuSeconds() - before) / sleeps; // per cent at 10,000 a second
    }
}
BENCHMARK(timedSleeps)->Iterations(1)->Unit(benchmark::kMillisecond);

// Per process: making it, its place in the schedule, and one pass over all.
void buildProcesses(benchmark::State& state)
{
    const PinnedThread pinned;
    for (auto _ : state) {
        ZR::Corvale::Corvale engine(0);
        addProcesses(engine, static_cast<int>(state.range(0)), 10.0f);
        benchmark::DoNotOptimize(engine.getScheduledJobs());
        for (const std::string& name : engine.getProcesses())
            engine.getData(name + ":out");
    }
    peers::perItem(state, static_cast<double>(state.range(0)));
}
BENCHMARK(buildProcesses)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// Per byte of a text of so many statements, a hundred bytes each.
void loadText(benchmark::State& state)
{
    const PinnedThread pinned;
    std::string text;
    for (int i = 0; i < state.range(0); ++i) {
        const std::string line = "source s" + std::to_string(i) + " { " + std::to_string(i) + " } # ";
        text += line + std::string(99 - line.size(), '-') + "\n";
    }
    for (auto _ : state) {
        ZR::Corvale::Corvale engine(0);
        if (!engine.loadProgram(text))
            state.SkipWithError("the program does not load");
    }
    peers::perItem(state, static_cast<double>(text.size()));
}
BENCHMARK(loadText)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
