// How many computations a second do 1 and 2 threads make, of processes that share nothing and of
// processes that share one source, with nodes that do nothing?

#include "corvale/data/data.h"
#include "corvale/runtime/nodesource.h"
#include "engine/graphs.h"
#include "engine/peers.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <vector>

namespace {

using ZR::Corvale::Data;
using ZR::Corvale::NodeSource;

constexpr int nodes = 10;

std::vector<graphs::OneProcess> makeProcesses(bool sharedSource)
{
    const auto filter = graphs::chain(nodes);
    const auto source = boost::make_shared<NodeSource>("in");
    std::vector<graphs::OneProcess> processes;
    for (int i = 0; i < 2; ++i) {
        const std::string name = "p" + std::to_string(i);
        processes.push_back(sharedSource ? graphs::OneProcess(name, filter, source)
                                         : graphs::makeProcess(name, graphs::chain(nodes)));
    }
    return processes;
}

void computeOn(benchmark::State& state, bool sharedSource)
{
    static std::vector<graphs::OneProcess> processes;
    if (state.thread_index() == 0)
        processes = makeProcesses(sharedSource);
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        processes[static_cast<std::size_t>(state.thread_index())].compute(value);
    peers::perItem(state, 1);
    if (state.thread_index() == 0)
        processes.clear();
}

void shareNothing(benchmark::State& state)
{
    computeOn(state, false);
}
BENCHMARK(shareNothing)->Threads(1)->Threads(2)->UseRealTime();

void shareSource(benchmark::State& state)
{
    computeOn(state, true);
}
BENCHMARK(shareSource)->Threads(1)->Threads(2)->UseRealTime();

} // namespace
