#include "corvale/runtime/eventlist.h"

#include "corvale/data/data.h"
#include "corvale/runtime/event.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

void EventList::add(boost::shared_ptr<Event> event)
{
    const boost::lock_guard<ShortLock> guard(_lock);
    const boost::shared_ptr<Events> events =
        _events ? boost::make_shared<Events>(*_events) : boost::make_shared<Events>();
    events->push_back(event);
    _events = events;
    _any.store(true, std::memory_order_release);
}

void EventList::_raise(const boost::shared_ptr<Data>& data) const
{
    boost::shared_ptr<const Events> events;
    {
        const boost::lock_guard<ShortLock> guard(_lock);
        events = _events;
    }
    if (!events)
        return;
    for (const boost::shared_ptr<Event>& event : *events)
        event->raise(data);
}

void EventList::clear()
{
    boost::shared_ptr<const Events> dropped; // freed without the lock
    const boost::lock_guard<ShortLock> guard(_lock);
    dropped.swap(_events);
}

} // namespace ZR::Corvale
