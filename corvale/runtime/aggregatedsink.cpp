#include "corvale/runtime/aggregatedsink.h"

#include "corvale/data/data.h"
#include "corvale/runtime/event.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/port.h"

#include <boost/make_shared.hpp>

#include <vector>

namespace ZR::Corvale {

bool AggregatedSink::addSink(boost::shared_ptr<NodeSink> sink)
{
    return _sinks.emplace(sink->getName(), sink).second;
}

void AggregatedSink::update()
{
    std::vector<boost::shared_ptr<Data>> values;
    values.reserve(_sinks.size());
    for (const auto& entry : _sinks) {
        values.push_back(entry.second->getLastData());
        if (!values.back()) {
            _lastData.store(boost::shared_ptr<Data>());
            return;
        }
    }
    const boost::shared_ptr<Data> list = boost::make_shared<Data>(values);
    _lastData.store(list);
    _events.raise(list);
}

} // namespace ZR::Corvale
