#include "corvale/runtime/eventlist.h"

#include "corvale/data/data.h"
#include "corvale/runtime/event.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

void EventList::add(boost::shared_ptr<Event> event)
{
    const boost::lock_guard<ShortLock> guard(_lock);
    _events.push_back(event);
    _size.store(_events.size(), std::memory_order_release);
}

void EventList::_raise(const boost::shared_ptr<Data>& data) const
{
    const std::size_t size = _size.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < size; ++i)
        if (const boost::shared_ptr<Event> event = _at(i))
            event->raise(data);
}

// Null once the events were let go of.
boost::shared_ptr<Event> EventList::_at(std::size_t i) const
{
    const boost::lock_guard<ShortLock> guard(_lock);
    return i < _events.size() ? _events[i] : boost::shared_ptr<Event>();
}

void EventList::clear()
{
    std::vector<boost::shared_ptr<Event>> dropped; // freed without the lock
    const boost::lock_guard<ShortLock> guard(_lock);
    _size.store(0, std::memory_order_release);
    dropped.swap(_events);
}

} // namespace ZR::Corvale
