// How many computations a second do 1 and 2 threads make, of processes that share nothing and of
// processes that share one source, with nodes that do nothing?

#include "corvale/data/data.h"
#include "corvale/runtime/nodepulse.h"
#include "corvale/runtime/process.h"
#include "engine/graphs.h"
#include "engine/peers.h"
#include "support/pinnedthread.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <vector>

namespace {

using ZR::Corvale::Data;
using ZR::Corvale::NodePulse;

// A pulse that rests at a value has changed at each look: every update computes, and nobody sets it.
boost::shared_ptr<NodePulse> makeSource()
{
    const auto source = boost::make_shared<NodePulse>("in");
    source->setDefaultData(boost::make_shared<Data>(1));
    return source;
}

std::vector<graphs::OneProcess> makeProcesses(bool sharedSource)
{
    std::vector<graphs::OneProcess> processes;
    const auto shared = makeSource();
    for (int i = 0; i < 2; ++i)
        processes.emplace_back("p" + std::to_string(i), graphs::chain(10),
                               sharedSource ? shared : makeSource());
    return processes;
}

void computeOn(benchmark::State& state, bool sharedSource)
{
    const PinnedThread pinned(state.thread_index());
    static std::vector<graphs::OneProcess> processes;
    if (state.thread_index() == 0)
        processes = makeProcesses(sharedSource);
    for (auto _ : state)
        processes[static_cast<std::size_t>(state.thread_index())].process->update();
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
