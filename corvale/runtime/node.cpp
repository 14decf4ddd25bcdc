#include "corvale/runtime/node.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/portlookup.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <string>
#include <utility>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.node");
}

Node::Node(const std::string& name) : _name(name) {}

Node::~Node()
{
    _reportRegistrations([this](const Visitor& visit) {
        _scopes.forEachActive([&](const ScopeState& state) {
            if (state.synchronizeCount != 0)
                visit(state.key, state.synchronizeCount);
        });
    });
}

bool Node::setName(const std::string& name)
{
    _name = name;
    return true;
}

boost::shared_ptr<Port> Node::getInput(const std::string& name) const
{
    return findPort(_inputs, name);
}

boost::shared_ptr<Port> Node::getOutput(const std::string& name) const
{
    return findPort(_outputs, name);
}

void Node::synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    ScopeState& state = _scopes.enter(scopeHash);
    if (!_inputs.empty() && state.synchronizeCount == 1)
        for (const boost::shared_ptr<Port>& input : _inputs)
            if (Node* upstream = input->getUpstream())
                upstream->synchronize(processHash, scopeHash, depth + 1);
    _arrive(state, processHash, scopeHash, depth);
}

void Node::synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    if (!_release(processHash, scopeHash, depth))
        RK_LOG(rk::log::Fatal, category) << _name << "->synchronizeRelease(" << *processHash._string
                                         << "): Invalid release on process " << *processHash._string;
}

boost::shared_ptr<Data> Node::takeData(const StringHash& processHash, const StringHash& scopeHash,
                                       long long depth, boost::shared_ptr<Port> port)
{
    boost::shared_ptr<Data> value = requestData(processHash, scopeHash, depth, std::move(port));
    synchronizeRelease(processHash, scopeHash, depth);
    return value;
}

bool Node::_release(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    ScopeState* state = _scopes.find(scopeHash);
    if (!state || state->synchronizeCount == 0)
        return false;
    --state->synchronizeCount;
    _leave(*state, processHash, scopeHash, depth);
    _scopes.settle(*state);
    return true;
}

// Whoever is registered upstream is active itself: where nothing is left, nothing lies behind.
void Node::abandon(const StringHash& processHash, const StringHash& scopeHash)
{
    if (!_forget(processHash, scopeHash))
        return;
    for (const boost::shared_ptr<Port>& input : _inputs)
        if (Node* upstream = input->getUpstream())
            upstream->abandon(processHash, scopeHash);
}

bool Node::_forget(const StringHash&, const StringHash& scopeHash)
{
    ScopeState* state = _scopes.find(scopeHash);
    if (!state)
        return false;
    state->synchronizeCount = 0;
    _scopes.settle(*state);
    return true;
}

void Node::_reportRegistrations(const std::function<void(const Visitor&)>& forEach)
{
    _reportLeft(category, "->~Node(): There is still active synchronize count:", forEach);
}

std::size_t Node::activeScopes()
{
    std::size_t count = 0;
    _scopes.forEachActive([&](const ScopeState&) { ++count; });
    return count;
}

void Node::_reportLeft(const std::string& logCategory, const char* title,
                       const std::function<void(const Visitor&)>& forEach)
{
    try {
        std::string lines;
        forEach([&](std::uint64_t key, std::uint32_t count) {
            lines += "  process: " + std::to_string(key) + ", count: " + std::to_string(count) + "\n";
        });
        if (!lines.empty())
            RK_LOG(rk::log::Fatal, logCategory) << _name << title << "\n" << lines;
    } catch (...) { // no memory for the text
    }
}

void Node::_arrive(ScopeState&, const StringHash&, const StringHash&, long long) {}

void Node::_leave(ScopeState&, const StringHash&, const StringHash&, long long) {}

} // namespace ZR::Corvale
