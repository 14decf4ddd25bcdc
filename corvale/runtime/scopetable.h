#pragma once

#include "corvale/runtime/flattable.h"
#include "corvale/runtime/scopestate.h"
#include "corvale/runtime/shortlock.h"

#include <boost/thread/lock_guard.hpp>

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

namespace ZR::Corvale {

/// The states of one node, by scope.
///
/// A scope comes back with the next computation of its process. So a state that rests keeps its place,
/// the scope that it derived and the room of its vectors, and the next computation allocates nothing.
/// Once a few dozen states rest, they are given to other scopes: the table stays as small as the
/// number of scopes that are active at once.
/// Threads: thread-safe. A scope is active in one thread at a time, which finds and rests its state without
/// the lock, as long as no other scope came to the node after it; taking a state out of rest needs the lock.
/// The address of an active state holds.
class ScopeTable
{
public:
    /// The active state of a scope, taken out of rest or made if need be.
    ScopeState& acquire(const StringHash& scope);
    /// The same, with one registration more.
    ScopeState& enter(const StringHash& scope);

    // For the one thread of a scope.

    /// Its active state, or null.
    ScopeState* find(const StringHash& scope);
    /// Puts a state to rest if nothing of a computation is left in it.
    void settle(ScopeState& state);

    /// Calls `visit(state)` for every active state, under the lock.
    template <typename Visit>
    void forEachActive(Visit visit)
    {
        const boost::lock_guard<ShortLock> guard(_lock);
        for (const std::unique_ptr<ScopeState>& state : _states)
            if (state->active)
                visit(*state);
    }

private:
    // Caller holds the lock.
    ScopeState& _acquire(const StringHash& scope);
    ScopeState& _place(const StringHash& scope);
    void _freeResting();

    ShortLock _lock;
    std::atomic<ScopeState*> _latest{nullptr};        // the last one that was taken out of rest
    FlatTable<ScopeState*> _index;                    // active and resting; guarded by _lock
    std::vector<std::unique_ptr<ScopeState>> _states; // all of them; guarded by _lock
    std::vector<ScopeState*> _free;                   // those in no scope's name; guarded by _lock
    std::size_t _limit = 32;                          // of _index, before rests are freed; guarded by _lock
};

} // namespace ZR::Corvale
