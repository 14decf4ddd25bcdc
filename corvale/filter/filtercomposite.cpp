#include "corvale/filter/filtercomposite.h"

#include "corvale/data/data.h"
#include "corvale/filter/dotcluster.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.Composite ");

// The values of the exported inputs, for the time of one scope, also when a filter throws.
class LoadedInputs
{
public:
    LoadedInputs(std::vector<boost::shared_ptr<Port>>& ports, const StringHash& processHash,
                 const StringHash& scopeHash, long long depth)
        : _ports(ports),
          _processHash(processHash),
          _scopeHash(scopeHash),
          _depth(depth)
    {
    }
    LoadedInputs(const LoadedInputs&) = delete;
    LoadedInputs& operator=(const LoadedInputs&) = delete;
    void load(const std::vector<boost::shared_ptr<Data>>& values)
    {
        Port::loadData(_ports, values, _processHash, _scopeHash, _depth);
    }
    ~LoadedInputs() { Port::unloadData(_ports, _processHash, _scopeHash, _depth); }

private:
    std::vector<boost::shared_ptr<Port>>& _ports;
    const StringHash& _processHash;
    const StringHash& _scopeHash;
    const long long _depth;
};

} // namespace

FilterComposite::FilterComposite(const std::string& name) : Filter(name) {}

FilterComposite::~FilterComposite() = default;

bool FilterComposite::addNode(boost::shared_ptr<NodeFilter> node)
{
    const bool added = _nodes.emplace(node->getName(), node).second;
    if (!added)
        RK_LOG(rk::log::Error, category)
            << "Can't add node \"" << node->getName() << "\": node is already present.";
    return added;
}

boost::shared_ptr<NodeFilter> FilterComposite::getNode(const std::string& name) const
{
    const auto found = _nodes.find(name);
    if (found != _nodes.end())
        return found->second;
    RK_LOG(rk::log::Error, category) << "Can't retrieved node \"" << name << "\": node unknown.";
    return boost::shared_ptr<NodeFilter>();
}

bool FilterComposite::exportInput(const std::string& node, const std::string& port, const std::string& name)
{
    const boost::shared_ptr<NodeFilter> owner = getNode(node);
    const boost::shared_ptr<Port> inner = owner ? owner->getInput(port) : boost::shared_ptr<Port>();
    if (!inner)
        return false;
    _inputs.push_back(boost::make_shared<Port>(name, inner));
    _inputs.back()->setOptional(true);
    return true;
}

bool FilterComposite::exportOutput(const std::string& node, const std::string& port, const std::string& name)
{
    const boost::shared_ptr<NodeFilter> owner = getNode(node);
    const boost::shared_ptr<Port> inner = owner ? owner->getOutput(port) : boost::shared_ptr<Port>();
    if (!inner)
        return false;
    _outputs.push_back(boost::make_shared<Port>(name, inner));
    return true;
}

// Takes each node after all that it reads.
std::size_t FilterComposite::measureDepth()
{
    std::map<const Node*, std::vector<NodeFilter*>> readers;
    std::map<const Node*, std::size_t> unseenLinks, upstreamDepths;
    std::vector<NodeFilter*> order;
    std::size_t deepest = 0;
    for (const auto& entry : _nodes) {
        NodeFilter* const node = entry.second.get();
        deepest = std::max(deepest, node->getFilter()->depth());
        for (const boost::shared_ptr<Port>& input : node->getInputs())
            for (const boost::shared_ptr<Port>& link : input->getLinks()) {
                readers[link->getNode()].push_back(node);
                ++unseenLinks[node];
            }
        if (unseenLinks.count(node) == 0)
            order.push_back(node);
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::size_t depth = std::max(upstreamDepths[order[i]], order[i]->getFilter()->depth()) + 1;
        deepest = std::max(deepest, depth);
        for (NodeFilter* const reader : readers[order[i]]) {
            upstreamDepths[reader] = std::max(upstreamDepths[reader], depth);
            if (--unseenLinks[reader] == 0)
                order.push_back(reader);
        }
    }
    // What is left hangs on a circle, around which a computation goes once.
    _depth = deepest + (_nodes.size() - order.size()) + 1;
    return _depth;
}

void FilterComposite::clearValues()
{
    for (const auto& entry : _nodes)
        entry.second->clearValues();
}

void FilterComposite::synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    for (const boost::shared_ptr<Port>& output : _outputs)
        if (Node* node = output->getNode())
            node->synchronize(processHash, scopeHash, depth + 1);
}

void FilterComposite::synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                                         long long depth)
{
    for (const boost::shared_ptr<Port>& output : _outputs)
        if (Node* node = output->getNode())
            node->synchronizeRelease(processHash, scopeHash, depth + 1);
}

std::vector<boost::shared_ptr<Data>>
FilterComposite::applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs,
                             const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    if (inputs.size() != _inputs.size()) {
        RK_LOG(rk::log::Fatal, category) << _name << "->applyFilter(): missing input data";
        return {};
    }
    LoadedInputs loaded(_inputs, processHash, scopeHash, depth);
    loaded.load(inputs);
    std::vector<boost::shared_ptr<Data>> results;
    results.reserve(_outputs.size());
    for (const boost::shared_ptr<Port>& output : _outputs)
        results.push_back(
            output->getNode()->requestData(processHash, scopeHash, depth + 1, Port::lend(output)));
    return results;
}

void FilterComposite::abortFilter(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    for (const boost::shared_ptr<Port>& output : _outputs)
        output->getNode()->requestEmpty(processHash, scopeHash, depth + 1, Port::lend(output));
    Port::unloadData(_inputs, processHash, scopeHash, depth);
}

void FilterComposite::abandon(const StringHash& processHash, const StringHash& scopeHash)
{
    for (const boost::shared_ptr<Port>& output : _outputs)
        if (Node* node = output->getNode())
            node->abandon(processHash, scopeHash);
    Port::unloadData(_inputs, processHash, scopeHash, 0);
}

void FilterComposite::forget(const StringHash& processHash, const StringHash& scopeHash)
{
    for (const auto& entry : _nodes)
        entry.second->forget(processHash, scopeHash);
}

std::string FilterComposite::dumpToDot(long& counter, int depth) const
{
    DotCluster cluster(_name, counter);
    cluster.open("label=\"" + _name + " (Composite Filter)\";",
                 {"style=\"filled,dashed\";", "fillcolor=white;", "color=black;"});
    if (depth == 0) {
        cluster.box(_name);
        cluster.portShape();
        cluster.portsOfBox(_inputs, _outputs);
        return cluster.close();
    }

    std::map<const Node*, long> numbers;
    for (const auto& entry : _nodes) {
        numbers[entry.second.get()] = ++counter;
        std::string inner = entry.second->dumpToDot(counter, DotCluster::inside(depth));
        inner.pop_back(); // `line` ends it again
        cluster.line(inner);
    }
    const auto id = [&](const Port& port) {
        const Node* node = port.getNode();
        return node->getName() + "_" + port.getName() + "_" + std::to_string(numbers[node]);
    };
    for (const auto& entry : _nodes)
        for (const boost::shared_ptr<Port>& input : entry.second->getInputs())
            for (const boost::shared_ptr<Port>& link : input->getLinks())
                cluster.arrow(id(*link), id(*input));
    cluster.portShape();
    for (const boost::shared_ptr<Port>& input : _inputs) {
        cluster.port(input->getName());
        cluster.arrow(cluster.id(input->getName()), id(*input->getParent()));
    }
    for (const boost::shared_ptr<Port>& output : _outputs) {
        cluster.port(output->getName());
        cluster.arrow(id(*output->getParent()), cluster.id(output->getName()));
    }
    return cluster.close();
}

} // namespace ZR::Corvale
