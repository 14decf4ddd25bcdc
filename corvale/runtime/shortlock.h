#pragma once

#include "corvale/data/lockorder.h"

#include <atomic>

namespace ZR::Corvale {

/// A lock for a few instructions, such as a look into a small table.
///
/// Taking it is one atomic exchange and giving it back one store, which is half of what a mutex costs
/// when nobody waits; when somebody does, the holder is through before a mutex would have put the other
/// thread to sleep. Who waits longer gives the core away, and soon sleeps, so that a holder of lower
/// priority comes to run. To be used as a mutex, through a guard.
/// Threads: thread-safe; not recursive. By its usual rank it is innermost: no other lock is taken under it.
class ShortLock : private LockWatch
{
public:
    explicit ShortLock(LockRank rank = LockRank::Short) : LockWatch(rank) {}
    ShortLock(const ShortLock&) = delete;
    ShortLock& operator=(const ShortLock&) = delete;

    void lock()
    {
        wanted();
        if (_taken.exchange(true, std::memory_order_acquire))
            _wait();
        taken();
    }
    void unlock()
    {
        given();
        _taken.store(false, std::memory_order_release);
    }

private:
    void _wait();

    std::atomic<bool> _taken{false};
};

} // namespace ZR::Corvale
