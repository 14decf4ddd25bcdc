#pragma once

#include "support/logcapture.h"

#include "corvale/data/data.h"
#include "corvale/filter/filterprimitive.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/process.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <iterator>
#include <numeric>

// Small graphs of numbers, whose state is one text.
namespace support {

using namespace ZR::Corvale;
using Value = boost::shared_ptr<Data>;
using Values = std::vector<Value>;
using Hash = const StringHash&;
using PortPointer = boost::shared_ptr<Port>;

inline const auto number = [](int content) { return boost::make_shared<Data>(content); };
inline const auto show = [](const Value& value) { return value ? value->toString() : "-"; };
inline const auto words = [](const std::string& text) {
    std::istringstream stream(text);
    return std::vector<std::string>(std::istream_iterator<std::string>(stream), {});
};
/// The texts in a row, made from left to right.
inline const auto inOrder = [](std::initializer_list<std::string> texts) {
    return std::accumulate(texts.begin(), texts.end(), std::string());
};

/// What the filters below are asked, in order. Thread-safe.
inline struct Trace
{
    void add(const std::string& who, const char* what, long long depth)
    {
        const std::lock_guard<std::mutex> guard(mutex);
        text += who + " " + what + " " + std::to_string(depth) + ", ";
    }
    std::string take() { return std::exchange(text, ""); } ///< once nobody adds

    std::mutex mutex;
    std::string text; // guarded by mutex
} trace;

/// A filter that traces what it is asked, and computes by a function: the sum of its inputs for each
/// output, if there is none. Ports are given as words; an optional input begins with "?".
struct ProbeFilter : FilterPrimitive
{
    using Body = std::function<Values(const Values&)>;

    ProbeFilter(const std::string& name, const std::string& inputs, const std::string& outputs, Body use)
        : FilterPrimitive(name),
          body(use)
    {
        for (const std::string& input : words(inputs))
            _addInput(input.substr(input[0] == '?'))->setOptional(input[0] == '?');
        for (const std::string& output : words(outputs))
            _addOutput(output);
    }
    void synchronize(Hash, Hash, long long depth) override { trace.add(_name, "enter", depth); }
    void synchronizeRelease(Hash, Hash, long long depth) override { trace.add(_name, "leave", depth); }
    void abortFilter(Hash, Hash, long long depth) override { trace.add(_name, "abort", depth); }
    Values applyFilter(const Values& inputs, Hash, Hash place, long long depth) override
    {
        trace.add(_name, "apply", depth);
        scope.store(boost::make_shared<Data>(*place._string));
        if (body)
            return body(inputs);
        const auto add = [](int total, const Value& value) { return total + (value ? int(*value) : 0); };
        return Values(_outputs.size(), number(std::accumulate(inputs.begin(), inputs.end(), 0, add)));
    }

    const Body body;
    SharedValue scope; ///< of the latest call, as a text
};

inline const auto probe = [](const std::string& name, const std::string& inputs,
                             const std::string& outputs = "out", ProbeFilter::Body body = {}) {
    return boost::make_shared<ProbeFilter>(name, inputs, outputs, body);
};

/// A process that is due at each `run`, its nodes, and the log meanwhile.
struct Graph
{
    explicit Graph(const std::string& name = "p") : process(name, {}, 3, 1e9f)
    {
        trace.take(); // what another test left
        process.watchSource(boost::make_shared<NodeSource>("never set, so always a change"));
    }
    boost::shared_ptr<NodeSource> source(const std::string& name, const Value& value = {})
    {
        const auto node = keep(boost::make_shared<NodeSource>(name));
        if (value)
            node->setData(value);
        return node;
    }
    /// The inputs are joined, in order, to the first outputs of others; a null one is passed over.
    boost::shared_ptr<NodeFilter> node(const std::string& name, const boost::shared_ptr<Filter>& filter,
                                       const std::vector<boost::shared_ptr<Node>>& upstream = {})
    {
        const auto node = keep(boost::make_shared<NodeFilter>(name, filter));
        for (std::size_t i = 0; i < upstream.size(); ++i)
            if (upstream[i])
                node->getInputs()[i]->attach(upstream[i]->getOutputs().front());
        return node;
    }
    boost::shared_ptr<NodeSink> sink(const std::string& name, const PortPointer& output)
    {
        const auto node = keep(boost::make_shared<NodeSink>(name));
        node->getInput("in")->attach(output);
        process.addSink(node);
        return node;
    }
    template <typename Kind>
    boost::shared_ptr<Kind> keep(const boost::shared_ptr<Kind>& node)
    {
        nodes.push_back(node);
        return node;
    }
    /// Computes, then gives the state.
    std::string run() { return process.update() ? state() : "inactive"; }
    /// The sinks with their values, the nodes that hold something of a computation, and the lines logged
    /// since the last look, each with its level.
    std::string state()
    {
        std::string text;
        for (const auto& sink : process.getSinks())
            text += sink.first + "=" + show(sink.second->getLastData()) + " ";
        for (const auto& node : nodes)
            text += node->activeScopes() != 0 ? "left " + node->getName() + " " : "";
        for (const auto& record : log.records())
            text += "\n" + std::to_string(record.level) + " " + record.message;
        log.clear();
        return text;
    }

    LogCapture log; // first, so that what the nodes report at their end is not shown
    Process process;
    std::vector<boost::shared_ptr<Node>> nodes;
};

} // namespace support
