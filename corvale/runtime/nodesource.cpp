#include "corvale/runtime/nodesource.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.nodeSource");
}

NodeSource::NodeSource(const std::string& name) : Node(name)
{
    addOutput(boost::make_shared<Port>("out", boost::shared_ptr<Port>(), this));
}

NodeSource::~NodeSource()
{
    _reportLeft(category, "->~NodeSource(): There is still count to entry cache:", _openCount);
}

boost::shared_ptr<Data> NodeSource::requestData(const StringHash& processHash, const StringHash&, long long,
                                                boost::shared_ptr<Port>)
{
    {
        const boost::lock_guard<ShortLock> guard(_sourceLock);
        if (const Snapshot* snapshot = _snapshots.find(processHash._hash))
            return snapshot->data;
    }
    RK_LOG(rk::log::Fatal, category) << getName() << "->requestData(" << *processHash._string
                                     << "): No cache found.";
    return boost::shared_ptr<Data>();
}

void NodeSource::requestEmpty(const StringHash& processHash, const StringHash&, long long,
                              boost::shared_ptr<Port>)
{
    {
        const boost::lock_guard<ShortLock> guard(_sourceLock);
        if (_snapshots.find(processHash._hash))
            return;
    }
    RK_LOG(rk::log::Fatal, category) << getName() << "->requestEmpty(" << *processHash._string
                                     << "): no cache found.";
}

bool NodeSource::setData(boost::shared_ptr<Data> value)
{
    exchangeData(value); // the former value goes with the argument, after the lock
    return true;
}

void NodeSource::exchangeData(boost::shared_ptr<Data>& value)
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    ++_uid;
    _data.swap(value);
}

boost::shared_ptr<Data> NodeSource::getData() const
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _data;
}

std::uint64_t NodeSource::getUid() const
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _uid;
}

void NodeSource::_arrive(ScopeState&, const StringHash& processHash, const StringHash& scopeHash,
                         long long depth)
{
    _synchronize(processHash, scopeHash, depth);
}

bool NodeSource::_release(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    if (!_scopes.leave(scopeHash))
        return false;
    _synchronizeRelease(processHash, scopeHash, depth);
    return true;
}

bool NodeSource::_forget(const StringHash& processHash, const StringHash& scopeHash)
{
    bool registered = false;
    while (_scopes.leave(scopeHash))
        registered = true;
    Snapshot dropped; // freed without the lock
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    dropped = _snapshots.take(processHash._hash);
    return registered;
}

void NodeSource::_synchronize(const StringHash& processHash, const StringHash&, long long)
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    const auto [snapshot, first] = _snapshots.insert(processHash._hash);
    if (first)
        snapshot->data = _data;
    ++snapshot->count;
}

void NodeSource::_synchronizeRelease(const StringHash& processHash, const StringHash&, long long)
{
    Snapshot dropped; // freed without the lock
    {
        const boost::lock_guard<ShortLock> guard(_sourceLock);
        if (Snapshot* snapshot = _snapshots.find(processHash._hash)) {
            if (--snapshot->count == 0)
                dropped = _snapshots.take(processHash._hash);
            return;
        }
    }
    RK_LOG(rk::log::Fatal, category) << getName() << "->_synchronizeRelease(" << *processHash._string
                                     << "): Invalid release on process " << *processHash._string;
}

} // namespace ZR::Corvale
