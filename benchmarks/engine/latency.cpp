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

// "trigger" stands still for the workers, by priority 0: the host computes it in `getData`, its sink's
// event pushes "woken", and that one's callback notes the time.
void eventToRun(benchmark::State& state)
{
    ZR::Corvale::Corvale engine(1);
    engine.loadProgram("source in { 1 } source other { 1 }"
                       "process woken(Identity, 3, 10000.0) { in <= other; out => out }"
                       "process trigger(Identity, 0, 100000.0) { in <= in; out => out; out ~> woken }");
    std::atomic<Clock::rep> ran{0};
    engine.createEvent("woken:out",
                       [&](boost::shared_ptr<Data>) { ran = Clock::now().time_since_epoch().count(); });
    engine.setProcessFrequency("woken", 1.0f); // asleep: the next look by the clock is a second away
    std::vector<double> nanoseconds;
    for (auto _ : state) {
        engine.setProcessFrequency("woken", 0.5f);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ran = 0;
        engine.setData("other", boost::make_shared<Data>(2));
        engine.resetProcess("woken"); // due, but nobody has looked: the worker sleeps
        engine.setData("in", boost::make_shared<Data>(3));
        const Clock::rep before = Clock::now().time_since_epoch().count();
        engine.getData("trigger:out");
        while (ran == 0)
            std::this_thread::yield();
        nanoseconds.push_back(static_cast<double>(ran - before));
    }
    std::sort(nanoseconds.begin(), nanoseconds.end());
    state.counters["ns"] = nanoseconds[nanoseconds.size() / 2] / 1000.0; // microseconds, for the table
    state.counters["p99_us"] = nanoseconds[nanoseconds.size() * 99 / 100] / 1000.0;
}
BENCHMARK(eventToRun)->Iterations(300)->Unit(benchmark::kMicrosecond);

} // namespace
