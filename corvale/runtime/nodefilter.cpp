#include "corvale/runtime/nodefilter.h"

#include "corvale/data/data.h"
#include "corvale/filter/dotcluster.h"
#include "corvale/filter/filter.h"
#include "corvale/runtime/flattable.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>

#include <cstdint>
#include <sstream>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.nodeFilter");

const char* const noFilter = "Filter node doesn't own a filter !";
const char* const noPort = "No output port specified";
const char* const cyclicGraph = "The graph has a cycle through this node.";

// Texts that differ in two of their last characters alone often have one hash, as those of addresses that lie
// near one another would. Behind the digits of the address stand others, which differ from the first one on.
std::string addressId(const void* address)
{
    std::ostringstream text;
    text << "__" << address << std::hex << mixed(reinterpret_cast<std::uintptr_t>(address));
    return text.str();
}

// A computation that an exception leaves behind: the next one starts it afresh.
class ComputingMark
{
public:
    explicit ComputingMark(ScopeState& state) : _state(state) { _state.progress = ScopeState::Computing; }
    ~ComputingMark()
    {
        _state.inputs.clear();
        if (!_done)
            _state.progress = ScopeState::Pending;
    }
    void done(std::vector<boost::shared_ptr<Data>> results)
    {
        _state.results = std::move(results);
        _state.progress = ScopeState::Done;
        _done = true;
    }

private:
    ScopeState& _state;
    bool _done = false;
};

} // namespace

NodeFilter::NodeFilter(const std::string& name, boost::shared_ptr<Filter> filter)
    : Node(name),
      _filter(filter),
      _uniqueId(addressId(this))
{
    for (const boost::shared_ptr<Port>& port : _filter->getInputs())
        addInput(boost::make_shared<Port>(port->getName(), port, this));
    for (const boost::shared_ptr<Port>& port : _filter->getOutputs())
        addOutput(boost::make_shared<Port>(port->getName(), port, this));
}

NodeFilter::~NodeFilter()
{
    _reportLeft(category,
                "->~NodeFilter(): There is still count to entry cache:", [this](const Visitor& visit) {
                    _scopes.forEachActive([&](const ScopeState& state) {
                        if (state.used)
                            visit(state.key, state.useCount);
                    });
                });
}

void NodeFilter::_arrive(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                         long long depth)
{
    if (!_filter)
        return _fault("_synchronize", processHash, noFilter);
    if (!state.used) {
        _filter->synchronize(processHash, _innerScope(state, scopeHash), depth);
        state.used = true;
        state.useCount = 0;
    }
    ++state.useCount;
}

void NodeFilter::_leave(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                        long long depth)
{
    if (!state.used)
        return _fault("_synchronizeRelease", processHash,
                      "Invalid release on process " + *processHash._string);
    if (--state.useCount == 0) {
        state.used = false;
        if (state.progress == ScopeState::Done)
            state.progress = ScopeState::Pending;
    }
    if (!_filter)
        return _fault("_synchronizeRelease", processHash, noFilter);
    if (!state.used)
        _filter->synchronizeRelease(processHash, _innerScope(state, scopeHash), depth);
}

boost::shared_ptr<Data> NodeFilter::requestData(const StringHash& processHash, const StringHash& scopeHash,
                                                long long depth, boost::shared_ptr<Port> port)
{
    ScopeState* const state = _computed(processHash, scopeHash, depth, port.get());
    const boost::shared_ptr<Data>* const result = state ? _resultFor(*state, port.get()) : nullptr;
    return result ? *result : boost::shared_ptr<Data>();
}

boost::shared_ptr<Data> NodeFilter::takeData(const StringHash& processHash, const StringHash& scopeHash,
                                             long long depth, boost::shared_ptr<Port> port)
{
    boost::shared_ptr<Data> value;
    if (ScopeState* const state = _computed(processHash, scopeHash, depth, port.get())) {
        if (boost::shared_ptr<Data>* const result = _resultFor(*state, port.get())) {
            const bool isLast = state->used && state->useCount == 1;
            value = isLast ? std::move(*result) : *result;
        }
    }
    synchronizeRelease(processHash, scopeHash, depth);
    return value;
}

// Runs the filter unless it has run in this scope. Null, with a fatal line, if that cannot be.
ScopeState* NodeFilter::_computed(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                                  const Port* port)
{
    if (!port) {
        _fault("requestData", processHash, noPort);
        return nullptr;
    }
    ScopeState& state = _stateOf(scopeHash);
    if (state.progress == ScopeState::Computing) {
        _fault("requestData", processHash, cyclicGraph);
        return nullptr;
    }
    if (state.progress == ScopeState::Pending) {
        ComputingMark mark(state);
        const StringHash& innerScope = _innerScope(state, scopeHash);
        if (_pullInputs(state, processHash, scopeHash, depth)) {
            mark.done(_filter->consume(state.inputs, processHash, innerScope, depth));
        } else {
            _filter->abortFilter(processHash, innerScope, depth);
            mark.done({});
        }
    }
    return &state;
}

void NodeFilter::requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                              boost::shared_ptr<Port> port)
{
    if (!port)
        return _fault("requestEmpty", processHash, noPort);
    ScopeState& state = _stateOf(scopeHash);
    if (state.progress != ScopeState::Pending)
        return;
    ComputingMark mark(state);
    for (const boost::shared_ptr<Port>& input : _inputs) {
        input->requestEmpty(processHash, scopeHash, depth + 1);
        input->synchronizeRelease(processHash, scopeHash, depth + 1);
    }
    _filter->abortFilter(processHash, _innerScope(state, scopeHash), depth);
    mark.done({});
}

void NodeFilter::clearValues()
{
    std::vector<boost::shared_ptr<Data>> dropped; // ends without the lock; nothing here may need memory
    do {
        dropped.clear();
        _scopes.forEachActive([&](ScopeState& state) {
            if (dropped.empty())
                dropped.swap(state.results);
        });
    } while (!dropped.empty());
}

void NodeFilter::forget(const StringHash& processHash, const StringHash& scopeHash)
{
    _filter->forget(processHash, StringHash::extended(scopeHash, _uniqueId));
}

void NodeFilter::abandonShared(const StringHash& processHash, const StringHash& scopeHash)
{
    const ScopeState* state = _scopes.find(scopeHash);
    if (!state)
        return;
    if (state->innerScope)
        _filter->abandon(processHash, *state->innerScope);
    for (const boost::shared_ptr<Port>& input : _inputs)
        if (Node* upstream = input->getUpstream())
            upstream->abandon(processHash, scopeHash);
}

bool NodeFilter::_forget(const StringHash& processHash, const StringHash& scopeHash)
{
    ScopeState* state = _scopes.find(scopeHash);
    if (!state)
        return false;
    if (state->innerScope)
        _filter->abandon(processHash, *state->innerScope);
    state->used = false;
    state->useCount = 0;
    state->progress = ScopeState::Pending;
    return Node::_forget(processHash, scopeHash);
}

ScopeState& NodeFilter::_stateOf(const StringHash& scopeHash)
{
    ScopeState* state = _scopes.find(scopeHash);
    return state ? *state : _scopes.acquire(scopeHash);
}

// Derived once and then remembered: building the text would cost more than the rest of a cheap node.
const StringHash& NodeFilter::_innerScope(ScopeState& state, const StringHash& scopeHash) const
{
    if (!state.innerScope)
        state.innerScope = StringHash::extended(scopeHash, _uniqueId);
    return *state.innerScope;
}

// Each input is released as soon as it is read, so that what lies upstream can go before the filter
// runs. From the first missing mandatory input on, the rest is not computed. False if one is missing.
bool NodeFilter::_pullInputs(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                             long long depth)
{
    bool mandatoryPresent = true;
    if (state.inputs.capacity() == 0) {
        state.inputs.swap(state.results); // empty until the filter has run: its room serves
        state.inputs.clear();
    }
    state.inputs.reserve(_inputs.size());
    for (const boost::shared_ptr<Port>& input : _inputs) {
        boost::shared_ptr<Data> value;
        if (mandatoryPresent) {
            value = input->takeData(processHash, scopeHash, depth + 1);
            if (!value)
                value = input->getDefaultData();
            mandatoryPresent = value || input->isOptional();
        } else {
            input->requestEmpty(processHash, scopeHash, depth + 1);
            input->synchronizeRelease(processHash, scopeHash, depth + 1);
        }
        state.inputs.push_back(std::move(value));
    }
    return mandatoryPresent;
}

// The port that is asked for may be an exported one, further out; then one of its parents is an output. Null
// if the filter gave nothing for it.
boost::shared_ptr<Data>* NodeFilter::_resultFor(ScopeState& state, const Port* port) const
{
    for (; port; port = port->getParent().get())
        for (std::size_t i = 0; i < _outputs.size(); ++i)
            if (_outputs[i].get() == port && i < state.results.size())
                return &state.results[i];
    return nullptr;
}

void NodeFilter::_fault(const char* operation, const StringHash& processHash, const std::string& text) const
{
    RK_LOG(rk::log::Fatal, category) << getName() << "->" << operation << "(" << *processHash._string
                                     << "): " << text;
}

std::string NodeFilter::dumpToDot(long& counter, int depth) const
{
    DotCluster cluster(getName(), counter);
    cluster.open("label=\"" + getName() + " (Filter Node)\";", {"style=filled;", "fillcolor=lightblue;"});
    if (depth == 0) {
        cluster.box(_filter->getName());
        cluster.portShape();
        cluster.portsOfBox(_inputs, _outputs);
        return cluster.close();
    }

    const DotCluster inner(_filter->getName(), ++counter); // the identifiers of the filter's own cluster
    std::string text = _filter->dumpToDot(counter, DotCluster::inside(depth));
    text.pop_back(); // `line` ends it again
    cluster.line(text);
    cluster.portShape();
    for (const boost::shared_ptr<Port>& input : _inputs) {
        cluster.port(input->getName());
        cluster.arrow(cluster.id(input->getName()), inner.id(input->getName()));
    }
    for (const boost::shared_ptr<Port>& output : _outputs) {
        cluster.port(output->getName());
        cluster.arrow(inner.id(output->getName()), cluster.id(output->getName()));
    }
    return cluster.close();
}

} // namespace ZR::Corvale
