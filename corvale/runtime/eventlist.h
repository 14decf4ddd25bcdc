#pragma once

#include "corvale/runtime/shortlock.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstddef>
#include <vector>

namespace ZR::Corvale {

class Data;
class Event;

/// The events of a sink, in the order in which they were added; one that was added twice fires twice.
/// Threads: thread-safe. Events run without the lock, and one that is added meanwhile fires next time.
class EventList
{
public:
    void add(boost::shared_ptr<Event> event);
    void raise(const boost::shared_ptr<Data>& data) const
    {
        if (_size.load(std::memory_order_acquire) != 0)
            _raise(data);
    }
    /// Lets go of all events, and so of the processes that they hold.
    void clear();

private:
    void _raise(const boost::shared_ptr<Data>& data) const;
    boost::shared_ptr<Event> _at(std::size_t i) const;

    mutable ShortLock _lock;
    std::atomic<std::size_t> _size{0};             // most sinks have none, and then need no lock
    std::vector<boost::shared_ptr<Event>> _events; // guarded by _lock
};

} // namespace ZR::Corvale
