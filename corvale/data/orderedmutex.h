#pragma once

#include "corvale/data/lockorder.h"

#include <boost/thread/mutex.hpp>

namespace ZR::Corvale {

/// A mutex with a place in the order of all locks; a plain one where the order is not checked.
///
/// To be used through a guard. Threads: thread-safe; not recursive.
template <LockRank rank>
class OrderedMutex : private LockWatch
{
public:
    /// `engine` as `LockWatch` takes it.
    explicit OrderedMutex(const void* engine = nullptr) : LockWatch(rank, engine) {}

    void lock()
    {
        wanted();
        _mutex.lock();
        taken();
    }
    bool try_lock()
    {
        if (!_mutex.try_lock())
            return false;
        tried();
        return true;
    }
    void unlock()
    {
        given();
        _mutex.unlock();
    }

private:
    boost::mutex _mutex;
};

} // namespace ZR::Corvale
