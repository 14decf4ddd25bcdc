// Does a chain of 10 nodes cost more per node when it lies 1 to 5 composites deep?

#include "corvale/data/data.h"
#include "engine/graphs.h"
#include "engine/peers.h"
#include "support/pinnedthread.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

namespace {

void nesting(benchmark::State& state)
{
    const PinnedThread pinned;
    const int depth = static_cast<int>(state.range(0));
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::nested(depth));
    const auto value = boost::make_shared<ZR::Corvale::Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, 10 + depth - 1); // each further composite is a node of its own
}
BENCHMARK(nesting)->DenseRange(1, 5);

} // namespace
