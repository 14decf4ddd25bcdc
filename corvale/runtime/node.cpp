#include "corvale/runtime/node.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/portlookup.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <string>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.node");
}

Node::Node(const std::string& name) : _name(name) {}

Node::~Node()
{
    _reportLeft(category, "->~Node(): There is still active synchronize count:", _openCount);
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

std::optional<std::uint32_t> Node::_openCount(const ScopeState& state)
{
    return state.synchronizeCount != 0 ? std::optional<std::uint32_t>(state.synchronizeCount) : std::nullopt;
}

std::size_t Node::activeScopes()
{
    std::size_t count = 0;
    _scopes.forEachActive([&](const ScopeState&) { ++count; });
    return count;
}

void Node::_reportLeft(const std::string& logCategory, const char* title, CountOf count)
{
    try {
        std::string lines;
        _scopes.forEachActive([&](const ScopeState& state) {
            if (const std::optional<std::uint32_t> left = count(state))
                lines +=
                    "  process: " + std::to_string(state.key) + ", count: " + std::to_string(*left) + "\n";
        });
        if (!lines.empty())
            RK_LOG(rk::log::Fatal, logCategory) << _name << title << "\n" << lines;
    } catch (...) { // no memory for the text
    }
}

void Node::_arrive(ScopeState&, const StringHash&, const StringHash&, long long) {}

void Node::_leave(ScopeState&, const StringHash&, const StringHash&, long long) {}

} // namespace ZR::Corvale
