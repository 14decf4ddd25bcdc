#include "corvale/runtime/scopetable.h"

#include <algorithm>

namespace ZR::Corvale {

ScopeState& ScopeTable::acquire(const StringHash& scope)
{
    ScopeState** known = _index.find(scope._hash);
    ScopeState& state = known ? **known : _place(scope);
    state.active = true;
    return state;
}

ScopeState* ScopeTable::findOpen(const StringHash& scope)
{
    ScopeState** known = _index.find(scope._hash);
    return known && (*known)->active && (*known)->open ? *known : nullptr;
}

std::vector<boost::shared_ptr<Data>> ScopeTable::settle(ScopeState& state)
{
    std::vector<boost::shared_ptr<Data>> held;
    if (!state.open && !state.used && state.progress == ScopeState::Pending) {
        held.swap(state.results);
        state.active = false;
    }
    return held;
}

ScopeState& ScopeTable::_place(const StringHash& scope)
{
    if (_index.size() >= _limit)
        _freeResting();
    if (_free.empty()) {
        _states.push_back(std::make_unique<ScopeState>());
        _free.reserve(_states.size());
        _free.push_back(_states.back().get());
    }
    ScopeState& state = *_free.back();
    *_index.insert(scope._hash).first = &state;
    _free.pop_back();
    state.key = scope._hash;
    return state;
}

void ScopeTable::_freeResting()
{
    for (const std::unique_ptr<ScopeState>& state : _states) {
        ScopeState** known = _index.find(state->key);
        if (state->active || !known || *known != state.get())
            continue;
        _index.take(state->key);
        state->innerScope.reset();
        _free.push_back(state.get());
    }
    _limit = std::max<std::size_t>(32, 2 * _index.size());
}

} // namespace ZR::Corvale
