#include "corvale/runtime/nodesink.h"

#include "corvale/data/data.h"
#include "corvale/runtime/event.h"
#include "corvale/runtime/port.h"

#include <boost/make_shared.hpp>

namespace ZR::Corvale {

NodeSink::NodeSink(const std::string& name) : Node(name)
{
    addInput(boost::make_shared<Port>("in", boost::shared_ptr<Port>(), this));
}

NodeSink::~NodeSink() = default;

boost::shared_ptr<Data> NodeSink::requestData(const StringHash& processHash, const StringHash& scopeHash,
                                              long long depth, boost::shared_ptr<Port>)
{
    const boost::shared_ptr<Port>& input = _inputs.front();
    boost::shared_ptr<Data> value = input->takeData(processHash, scopeHash, depth + 1);
    synchronizeRelease(processHash, scopeHash, depth);
    _lastData.store(value);
    if (value)
        _events.raise(value);
    return value;
}

void NodeSink::requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                            boost::shared_ptr<Port>)
{
    const boost::shared_ptr<Port>& input = _inputs.front();
    input->requestEmpty(processHash, scopeHash, depth + 1);
    input->synchronizeRelease(processHash, scopeHash, depth + 1);
    synchronizeRelease(processHash, scopeHash, depth);
}

bool NodeSink::reset()
{
    _lastData.store(boost::shared_ptr<Data>());
    return true;
}

} // namespace ZR::Corvale
