#include "corvale/runtime/nodesourcealias.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

NodeSourceAlias::NodeSourceAlias(const std::string& name, boost::shared_ptr<NodeSource> source)
    : NodeSource(name),
      _source(source)
{
}

NodeSourceAlias::~NodeSourceAlias() = default;

boost::shared_ptr<Data> NodeSourceAlias::requestData(const StringHash& processHash,
                                                     const StringHash& scopeHash, long long depth,
                                                     boost::shared_ptr<Port> port)
{
    return getSource()->requestData(processHash, scopeHash, depth, port);
}

void NodeSourceAlias::requestEmpty(const StringHash& processHash, const StringHash& scopeHash,
                                   long long depth, boost::shared_ptr<Port> port)
{
    getSource()->requestEmpty(processHash, scopeHash, depth, port);
}

boost::shared_ptr<Data> NodeSourceAlias::takeData(const StringHash& processHash, const StringHash& scopeHash,
                                                  long long depth, boost::shared_ptr<Port> port)
{
    return Node::takeData(processHash, scopeHash, depth, port);
}

bool NodeSourceAlias::setData(boost::shared_ptr<Data> value)
{
    return getSource()->setData(value);
}

boost::shared_ptr<Data> NodeSourceAlias::getData() const
{
    return getSource()->getData();
}

std::uint64_t NodeSourceAlias::getUid() const
{
    return getSource()->getUid();
}

void NodeSourceAlias::setSource(boost::shared_ptr<NodeSource> source)
{
    const boost::lock_guard<ShortLock> guard(_aliasLock);
    _source.swap(source);
}

boost::shared_ptr<NodeSource> NodeSourceAlias::getSource() const
{
    const boost::lock_guard<ShortLock> guard(_aliasLock);
    return _source;
}

bool NodeSourceAlias::_forget(const StringHash& processHash, const StringHash& scopeHash)
{
    const bool registered = NodeSource::_forget(processHash, scopeHash);
    if (registered)
        getSource()->abandon(processHash, scopeHash);
    return registered;
}

void NodeSourceAlias::_synchronize(const StringHash& processHash, const StringHash& scopeHash,
                                   long long depth)
{
    getSource()->synchronize(processHash, scopeHash, depth);
}

void NodeSourceAlias::_synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                                          long long depth)
{
    getSource()->synchronizeRelease(processHash, scopeHash, depth);
}

} // namespace ZR::Corvale
