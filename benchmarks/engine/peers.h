#pragma once

#include <benchmark/benchmark.h>
#include <boost/shared_ptr.hpp>
#include <tbb/flow_graph.h>
#include <tbb/global_control.h>

#include <sys/resource.h>

#include <memory>
#include <tuple>
#include <vector>

namespace ZR::Corvale {
class Data;
}

/// The same graphs in oneTBB: serial function nodes that pass a shared value on. A message is put in and
/// waited for, as a computation is.
namespace peers {

using Value = boost::shared_ptr<ZR::Corvale::Data>;
using Node = tbb::flow::function_node<Value, Value>;

/// Nanoseconds per item of an iteration, beside the time of the whole iteration.
inline void perItem(benchmark::State& state, double items)
{
    state.counters["ns"] = benchmark::Counter(static_cast<double>(state.iterations()) * items * 1e-9,
                                              benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// What this program has used of the processor so far, on all threads.
inline double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

/// Keeps oneTBB to the calling thread.
class OneThread
{
    tbb::global_control _control{tbb::global_control::max_allowed_parallelism, 1};
};

class Chain
{
public:
    explicit Chain(int nodes)
    {
        for (int i = 0; i < nodes; ++i) {
            _nodes.push_back(
                std::make_unique<Node>(_graph, tbb::flow::serial, [](const Value& value) { return value; }));
            if (i > 0)
                tbb::flow::make_edge(*_nodes[_nodes.size() - 2], *_nodes.back());
        }
    }
    void compute(const Value& value)
    {
        _nodes.front()->try_put(value);
        _graph.wait_for_all();
    }

private:
    tbb::flow::graph _graph;
    std::vector<std::unique_ptr<Node>> _nodes;
};

class Diamond
{
    using Both = std::tuple<Value, Value>;

public:
    Diamond()
    {
        tbb::flow::make_edge(_split, _left);
        tbb::flow::make_edge(_split, _right);
        tbb::flow::make_edge(_left, tbb::flow::input_port<0>(_both));
        tbb::flow::make_edge(_right, tbb::flow::input_port<1>(_both));
        tbb::flow::make_edge(_both, _join);
    }
    void compute(const Value& value)
    {
        _split.try_put(value);
        _graph.wait_for_all();
    }

private:
    tbb::flow::graph _graph;
    Node _split{_graph, tbb::flow::serial, [](const Value& value) { return value; }};
    Node _left{_graph, tbb::flow::serial, [](const Value& value) { return value; }};
    Node _right{_graph, tbb::flow::serial, [](const Value& value) { return value; }};
    tbb::flow::join_node<Both> _both{_graph};
    tbb::flow::function_node<Both, Value> _join{_graph, tbb::flow::serial,
                                                [](const Both& both) { return std::get<0>(both); }};
};

} // namespace peers
