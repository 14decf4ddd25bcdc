// What does a fork and a join of four nodes cost for each message, beside the same in oneTBB?

#include "corvale/data/data.h"
#include "engine/graphs.h"
#include "engine/peers.h"
#include "support/pinnedthread.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

namespace {

using ZR::Corvale::Data;

void diamond(benchmark::State& state)
{
    const PinnedThread pinned;
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::diamond());
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, 4);
}
BENCHMARK(diamond);

void tbbDiamond(benchmark::State& state)
{
    const PinnedThread pinned;
    const peers::OneThread only;
    peers::Diamond graph;
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, 4);
}
BENCHMARK(tbbDiamond);

} // namespace
