// How long from an event to the process that it wakes, with a worker that sleeps?

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace {

using ZR::Corvale::Data;
using Clock = std::chrono::steady_clock;

// The host computes "trigger" in `getData`; its sink's event pushes "woken", whose callback notes the time.
// "woken" was just reset, so that it is due, and nobody but the event tells the worker, which sleeps until
// its next look at everything.
void eventToRun(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    engine.loadProgram("source in { 1 } source other { 1 }"
                       "process woken(Identity, 3, 0.5) { in <= other; out => out }"
                       "process trigger(Identity, 0, 100000.0) { in <= in; out => out; out ~> woken }");
    std::atomic<Clock::rep> ran{0};
    engine.createEvent("woken:out",
                       [&](boost::shared_ptr<Data>) { ran = Clock::now().time_since_epoch().count(); });
    std::vector<double> microseconds;
    for (auto _ : state) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        engine.setData("in", boost::make_shared<Data>(2));
        engine.resetProcess("woken");
        ran = 0;
        const Clock::rep before = Clock::now().time_since_epoch().count();
        engine.getData("trigger:out");
        while (ran == 0)
            std::this_thread::yield();
        microseconds.push_back(static_cast<double>(ran - before) / 1000.0);
    }
    std::sort(microseconds.begin(), microseconds.end());
    state.counters["ns"] = microseconds[microseconds.size() / 2]; // microseconds, for the table
    state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
}
BENCHMARK(eventToRun)->Iterations(300)->Unit(benchmark::kMicrosecond);

} // namespace
