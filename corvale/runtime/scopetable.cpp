#include "corvale/runtime/scopetable.h"

#include <algorithm>

namespace ZR::Corvale {

ScopeState& ScopeTable::acquire(const StringHash& scope)
{
    const boost::lock_guard<ShortLock> guard(_lock);
    return _acquire(scope);
}

ScopeState& ScopeTable::enter(const StringHash& scope)
{
    const boost::lock_guard<ShortLock> guard(_lock);
    ScopeState& state = _acquire(scope);
    ++state.synchronizeCount;
    return state;
}

ScopeState& ScopeTable::_acquire(const StringHash& scope)
{
    ScopeState** known = _index.find(scope._hash);
    ScopeState& state = known ? **known : _place(scope);
    state.active.store(true, std::memory_order_release);
    _latest.store(&state, std::memory_order_release);
    return state;
}

// A state changes hands only while it rests, and its key before it is active again: one that is seen as
// active under this thread's scope is this thread's own.
ScopeState* ScopeTable::find(const StringHash& scope)
{
    const auto isActive = [&](const ScopeState* state) {
        return state && state->active.load(std::memory_order_acquire) &&
               state->key.load(std::memory_order_relaxed) == scope._hash;
    };
    ScopeState* latest = _latest.load(std::memory_order_acquire);
    if (isActive(latest))
        return latest;
    const boost::lock_guard<ShortLock> guard(_lock);
    ScopeState** known = _index.find(scope._hash);
    return known && isActive(*known) ? *known : nullptr;
}

void ScopeTable::settle(ScopeState& state)
{
    if (state.synchronizeCount != 0 || state.used || state.progress != ScopeState::Pending)
        return;
    state.results.clear();
    state.active.store(false, std::memory_order_release);
}

ScopeState& ScopeTable::_place(const StringHash& scope)
{
    if (_index.size() >= _limit)
        _freeResting();
    if (_free.empty()) {
        _free.reserve(_states.size() + 1);
        _states.push_back(std::make_unique<ScopeState>());
        _free.push_back(_states.back().get());
    }
    ScopeState& state = *_free.back();
    *_index.insert(scope._hash).first = &state;
    _free.pop_back();
    state.key.store(scope._hash, std::memory_order_relaxed);
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
