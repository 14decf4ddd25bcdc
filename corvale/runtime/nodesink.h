#pragma once

#include "corvale/runtime/eventlist.h"
#include "corvale/runtime/node.h"
#include "corvale/runtime/sharedvalue.h"

namespace ZR::Corvale {

/// Where a computation ends: pulls one value, keeps it for readers, and fires its events.
///
/// One input port, "in", and no output. A computation that gives nothing wipes the former value, and
/// fires nothing.
/// Threads: computed by one thread at a time, read by any; events may be added at any time.
class NodeSink : public Node
{
public:
    explicit NodeSink(const std::string& name);
    ~NodeSink() override;

    /// One computation. `port` is ignored.
    boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                        long long depth, boost::shared_ptr<Port> port) override;
    /// Releases what was registered; keeps the last value, fires nothing.
    void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                      boost::shared_ptr<Port> port) override;

    boost::shared_ptr<Data> getLastData() const { return _lastData.load(); }
    /// Forgets the last value. True.
    bool reset();
    void addEvent(boost::shared_ptr<Event> event) { _events.add(event); }
    void clearEvents() { _events.clear(); }

private:
    SharedValue _lastData;
    EventList _events;
};

} // namespace ZR::Corvale
