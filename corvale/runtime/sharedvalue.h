#pragma once

#include "corvale/runtime/shortlock.h"

#include <boost/shared_ptr.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

class Data;

/// A value that one thread stores while others read it. Thread-safe.
class SharedValue
{
public:
    boost::shared_ptr<Data> load() const
    {
        const boost::lock_guard<ShortLock> guard(_lock);
        return _value;
    }

    void store(boost::shared_ptr<Data> value)
    {
        const boost::lock_guard<ShortLock> guard(_lock);
        _value.swap(value); // the former value goes with the argument, after the lock
    }

private:
    mutable ShortLock _lock;
    boost::shared_ptr<Data> _value; // guarded by _lock
};

} // namespace ZR::Corvale
