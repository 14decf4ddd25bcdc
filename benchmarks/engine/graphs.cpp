#include "engine/graphs.h"

#include "corvale/data/data.h"
#include "corvale/filter/filtercomposite.h"
#include "corvale/filters/duplicate.h"
#include "corvale/filters/identity.h"
#include "corvale/filters/mandatory.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/process.h"

#include <boost/make_shared.hpp>

namespace graphs {

using namespace ZR::Corvale;

namespace {

void add(FilterComposite& composite, const std::string& name, const boost::shared_ptr<Filter>& filter)
{
    composite.addNode(boost::make_shared<NodeFilter>(name, filter));
}

void link(const FilterComposite& composite, const std::string& from, const std::string& output,
          const std::string& to, const std::string& input)
{
    composite.getNode(to)->getInput(input)->attach(composite.getNode(from)->getOutput(output));
}

std::string nodeName(int i)
{
    return "n" + std::to_string(i);
}

} // namespace

boost::shared_ptr<Filter> chain(int nodes)
{
    const auto composite = boost::make_shared<FilterComposite>("Chain");
    const auto identity = boost::make_shared<Filters::Identity>();
    for (int i = 0; i < nodes; ++i) {
        add(*composite, nodeName(i), identity);
        if (i > 0)
            link(*composite, nodeName(i - 1), "", nodeName(i), "");
    }
    composite->exportInput(nodeName(0), "", "in");
    composite->exportOutput(nodeName(nodes - 1), "", "out");
    return composite;
}

boost::shared_ptr<Filter> diamond()
{
    const auto composite = boost::make_shared<FilterComposite>("Diamond");
    const auto identity = boost::make_shared<Filters::Identity>();
    add(*composite, "split", boost::make_shared<Filters::Duplicate>());
    add(*composite, "a", identity);
    add(*composite, "b", identity);
    add(*composite, "join", boost::make_shared<Filters::Mandatory>("Mandatory2", 2));
    link(*composite, "split", "left", "a", "");
    link(*composite, "split", "right", "b", "");
    link(*composite, "a", "", "join", "in1");
    link(*composite, "b", "", "join", "in2");
    composite->exportInput("split", "", "in");
    composite->exportOutput("join", "out1", "out");
    return composite;
}

boost::shared_ptr<Filter> nested(int depth)
{
    boost::shared_ptr<Filter> filter = chain(10);
    for (int i = 1; i < depth; ++i) {
        const auto outer = boost::make_shared<FilterComposite>("Outer" + std::to_string(i));
        add(*outer, "inner", filter);
        outer->exportInput("inner", "", "in");
        outer->exportOutput("inner", "", "out");
        filter = outer;
    }
    return filter;
}

OneProcess::OneProcess(const std::string& name, const boost::shared_ptr<Filter>& filter,
                       const boost::shared_ptr<NodeSource>& input)
    : OneProcess(name, boost::make_shared<NodeFilter>(name + "_" + filter->getName(), filter), input)
{
}

OneProcess::OneProcess(const std::string& name, const boost::shared_ptr<NodeFilter>& node,
                       const boost::shared_ptr<NodeSource>& input)
    : source(input)
{
    const auto sink = boost::make_shared<NodeSink>("out");
    if (node) {
        node->getInputs().front()->attach(source->getOutput("out"));
        sink->getInput("in")->attach(node->getOutputs().front());
    } else {
        sink->getInput("in")->attach(source->getOutput("out"));
    }
    process = boost::make_shared<Process>(name, node, Process::defaultPriority, 1e9f);
    process->addSource(source);
    process->watchSource(source);
    process->addSink(sink);
}

void OneProcess::compute(const boost::shared_ptr<Data>& value)
{
    source->setData(value);
    process->update();
}

OneProcess makeProcess(const std::string& name, const boost::shared_ptr<Filter>& filter)
{
    return OneProcess(name, filter, boost::make_shared<NodeSource>("in"));
}

OneProcess makeBareProcess(const std::string& name)
{
    return OneProcess(name, boost::shared_ptr<NodeFilter>(), boost::make_shared<NodeSource>("in"));
}

std::string chainText(int nodes)
{
    std::string text = "filter Chain { ";
    for (int i = 0; i < nodes; ++i)
        text += "Identity " + nodeName(i) + "; ";
    for (int i = 1; i < nodes; ++i)
        text += nodeName(i - 1) + " -> " + nodeName(i) + "; ";
    return text + nodeName(0) + " <= in; " + nodeName(nodes - 1) + " => out }";
}

} // namespace graphs
