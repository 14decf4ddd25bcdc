// What does a node that does nothing cost, in a chain, beside a serial function node of oneTBB?

#include "corvale/data/data.h"
#include "corvale/runtime/process.h"
#include "engine/graphs.h"
#include "engine/peers.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

namespace {

using ZR::Corvale::Data;

// 0 nodes, if it could be built: what a computation costs before any node inside the process's filter.
void computation(benchmark::State& state)
{
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(1));
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
}
BENCHMARK(computation);

void notDue(benchmark::State& state)
{
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(1));
    graph.compute(boost::make_shared<Data>(1));
    graph.process->setFrequency(0.001f);
    for (auto _ : state)
        graph.process->update();
}
BENCHMARK(notDue);

void chain(benchmark::State& state)
{
    graphs::OneProcess graph = graphs::makeProcess("p", graphs::chain(static_cast<int>(state.range(0))));
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, state.range(0));
}
BENCHMARK(chain)->Arg(1)->Arg(10)->Arg(100);

void tbbChain(benchmark::State& state)
{
    const peers::OneThread only;
    peers::Chain graph(static_cast<int>(state.range(0)));
    const auto value = boost::make_shared<Data>(1);
    for (auto _ : state)
        graph.compute(value);
    peers::perItem(state, state.range(0));
}
BENCHMARK(tbbChain)->Arg(1)->Arg(10)->Arg(100);

} // namespace
