#pragma once

#include "corvale/runtime/eventlist.h"
#include "corvale/runtime/sharedvalue.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace ZR::Corvale {

class Event;
class NodeSink;

/// Several sinks of one process as one value: an array with one element a sink, in ascending order of
/// the sinks' names, or nothing as long as one of them has nothing.
///
/// It is updated inside the process's computation, after all sinks: the elements belong together.
/// Ownership: shares its sinks. Threads: sinks are added by one thread, before the process runs; then
/// updated by one thread at a time, read by any.
class AggregatedSink
{
public:
    explicit AggregatedSink(const std::string& name) : _name(name) {}

    std::string getName() const { return _name; }
    /// False, and no change, if a sink of that name is present.
    bool addSink(boost::shared_ptr<NodeSink> sink);
    void addEvent(boost::shared_ptr<Event> event) { _events.add(event); }
    void clearEvents() { _events.clear(); }
    boost::shared_ptr<Data> getLastData() const { return _lastData.load(); }
    /// Collects the sinks' last values, and fires the events if there is one of each.
    void update();

private:
    const std::string _name;
    std::map<std::string, boost::shared_ptr<NodeSink>> _sinks; // fixed once the process is built
    SharedValue _lastData;
    EventList _events;
};

} // namespace ZR::Corvale
