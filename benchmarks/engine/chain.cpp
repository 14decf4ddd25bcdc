// What does a node that does nothing cost, in a chain, beside a serial function node of oneTBB?

#include "corvale/data/data.h"
#include "corvale/runtime/process.h"
#include "engine/allocations.h"
#include "engine/graphs.h"
#include "engine/peers.h"
#include "rk/os.h"
#include "support/pinnedthread.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

namespace {

using ZR::Corvale::Data;

// What every computation costs, whatever its filters do: source, sink and a due `update`.
void computation(benchmark::State& state)
{
    const PinnedThread pinned;
    graphs::OneProcess graph = graphs::makeBareProcess("p");
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
}
BENCHMARK(computation);

// A computation asks the time twice.
void twoClockReads(benchmark::State& state)
{
    const PinnedThread pinned;
    timeval now{};
    for (auto _ : state)
        for (int i = 0; i < 2; ++i) {
            rk::os::gettimeofday(&now);
            benchmark::DoNotOptimize(now);
        }
}
BENCHMARK(twoClockReads);

void notDue(benchmark::State& state)
{
    const PinnedThread pinned;
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(1));
    graph.compute(boost::make_shared<Data>(1));
    graph.process->setFrequency(0.001f);
    const long long before = allocations::count();
    for (auto _ : state)
        graph.process->update();
    if (allocations::count() != before)
        state.SkipWithError("it allocates");
}
BENCHMARK(notDue);

// Not a time: allocations per node and computation, of which one is the filter's result.
void chainAllocations(benchmark::State& state)
{
    const PinnedThread pinned;
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(100));
    const auto value = boost::make_shared<Data>(1);
    graph.compute(value);
    const long long before = allocations::count();
    for (auto _ : state)
        graph.compute(value);
    state.counters["ns"] = static_cast<double>(allocations::count() - before) /
                           (100.0 * static_cast<double>(state.iterations()));
}
BENCHMARK(chainAllocations);

void chain(benchmark::State& state)
{
    const PinnedThread pinned;
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(static_cast<int>(state.range(0))));
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, state.range(0));
}
BENCHMARK(chain)->Arg(1)->Arg(10)->Arg(100);

void tbbChain(benchmark::State& state)
{
    const PinnedThread pinned;
    const peers::OneThread only;
    peers::Chain graph(static_cast<int>(state.range(0)));
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, state.range(0));
}
BENCHMARK(tbbChain)->Arg(1)->Arg(10)->Arg(100);

} // namespace
