#pragma once

#include "corvale/runtime/flattable.h"
#include "corvale/runtime/scopestate.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

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
/// Threads: states are found and put to rest under the lock, and used without it; the address of an
/// active state holds.
class ScopeTable
{
public:
    boost::mutex& lock() { return _lock; }

    /// The active state of a scope, taken out of rest or made if need be. Caller holds the lock.
    ScopeState& acquire(const StringHash& scope);
    /// The state of a synchronized scope, or null. Caller holds the lock.
    ScopeState* findOpen(const StringHash& scope);
    /// Puts a state to rest if nothing of a computation is left in it. Gives what it still held, to be
    /// freed without the lock. Caller holds the lock.
    std::vector<boost::shared_ptr<Data>> settle(ScopeState& state);

    /// Calls `visit(state)` for every active state, under the lock.
    template <typename Visit>
    void forEachActive(Visit visit)
    {
        const boost::lock_guard<boost::mutex> guard(_lock);
        for (const std::unique_ptr<ScopeState>& state : _states)
            if (state->active)
                visit(*state);
    }

private:
    ScopeState& _place(const StringHash& scope);
    void _freeResting();

    boost::mutex _lock;
    FlatTable<ScopeState*> _index;                    // active and resting; guarded by _lock
    std::vector<std::unique_ptr<ScopeState>> _states; // all of them; guarded by _lock
    std::vector<ScopeState*> _free;                   // those in no scope's name; guarded by _lock
    std::size_t _limit = 32;                          // of _index, before rests are freed; guarded by _lock
};

} // namespace ZR::Corvale
