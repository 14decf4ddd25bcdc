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
    const auto registrations = [this](const Visitor& visit) { _forEachRegistration(visit); };
    _reportLeft(category, "->~NodeSource(): There is still count to entry cache:", registrations);
    _reportRegistrations(registrations);
}

NodeSource::Shard& NodeSource::_shardOf(const StringHash& key)
{
    return _shards[mixed(key._hash) >> (64 - shardBits)];
}

boost::shared_ptr<Data> NodeSource::requestData(const StringHash& processHash, const StringHash&, long long,
                                                boost::shared_ptr<Port>)
{
    Shard& shard = _shardOf(processHash);
    {
        const boost::lock_guard<ShortLock> guard(shard.lock);
        if (const Snapshot* snapshot = shard.snapshots.find(processHash._hash))
            return snapshot->data;
    }
    RK_LOG(rk::log::Fatal, category) << getName() << "->requestData(" << *processHash._string
                                     << "): No cache found.";
    return boost::shared_ptr<Data>();
}

void NodeSource::requestEmpty(const StringHash& processHash, const StringHash&, long long,
                              boost::shared_ptr<Port>)
{
    Shard& shard = _shardOf(processHash);
    {
        const boost::lock_guard<ShortLock> guard(shard.lock);
        if (shard.snapshots.find(processHash._hash))
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
    _data.swap(value);
    _uid.fetch_add(1, std::memory_order_release);
}

boost::shared_ptr<Data> NodeSource::getData() const
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _data;
}

// Whoever sees a change finds its value.
std::uint64_t NodeSource::getUid() const
{
    return _uid.load(std::memory_order_acquire);
}

void NodeSource::synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    {
        Shard& shard = _shardOf(scopeHash);
        const boost::lock_guard<ShortLock> guard(shard.lock);
        ++*shard.registrations.insert(scopeHash._hash).first;
    }
    _synchronize(processHash, scopeHash, depth);
}

bool NodeSource::_release(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    {
        Shard& shard = _shardOf(scopeHash);
        const boost::lock_guard<ShortLock> guard(shard.lock);
        std::uint32_t* const count = shard.registrations.find(scopeHash._hash);
        if (!count)
            return false;
        if (--*count == 0)
            shard.registrations.take(scopeHash._hash);
    }
    _synchronizeRelease(processHash, scopeHash, depth);
    return true;
}

bool NodeSource::_forget(const StringHash& processHash, const StringHash& scopeHash)
{
    bool registered = false;
    {
        Shard& shard = _shardOf(scopeHash);
        const boost::lock_guard<ShortLock> guard(shard.lock);
        registered = shard.registrations.take(scopeHash._hash) != 0;
    }
    Snapshot dropped; // freed without the lock
    Shard& shard = _shardOf(processHash);
    const boost::lock_guard<ShortLock> guard(shard.lock);
    dropped = shard.snapshots.take(processHash._hash);
    return registered;
}

std::size_t NodeSource::activeScopes()
{
    std::size_t count = 0;
    _forEachRegistration([&](std::uint64_t, std::uint32_t) { ++count; });
    return count;
}

void NodeSource::_forEachRegistration(const Visitor& visit)
{
    for (Shard& shard : _shards) {
        const boost::lock_guard<ShortLock> guard(shard.lock);
        shard.registrations.forEach(visit);
    }
}

void NodeSource::_synchronize(const StringHash& processHash, const StringHash&, long long)
{
    Shard& shard = _shardOf(processHash);
    const boost::lock_guard<ShortLock> guard(shard.lock);
    const auto [snapshot, first] = shard.snapshots.insert(processHash._hash);
    if (first)
        snapshot->data = _freeze();
    ++snapshot->count;
}

boost::shared_ptr<Data> NodeSource::_freeze()
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _data;
}

void NodeSource::_synchronizeRelease(const StringHash& processHash, const StringHash&, long long)
{
    Snapshot dropped; // freed without the lock
    Shard& shard = _shardOf(processHash);
    {
        const boost::lock_guard<ShortLock> guard(shard.lock);
        if (Snapshot* snapshot = shard.snapshots.find(processHash._hash)) {
            if (--snapshot->count == 0)
                dropped = shard.snapshots.take(processHash._hash);
            return;
        }
    }
    RK_LOG(rk::log::Fatal, category) << getName() << "->_synchronizeRelease(" << *processHash._string
                                     << "): Invalid release on process " << *processHash._string;
}

// The last one in the process's outermost scope, which is the rule, gets the snapshot itself.
boost::shared_ptr<Data> NodeSource::takeData(const StringHash& processHash, const StringHash& scopeHash,
                                             long long depth, boost::shared_ptr<Port> port)
{
    if (processHash._hash == scopeHash._hash) {
        Shard& shard = _shardOf(processHash);
        const boost::lock_guard<ShortLock> guard(shard.lock);
        const std::uint32_t* const registrations = shard.registrations.find(scopeHash._hash);
        Snapshot* const snapshot = shard.snapshots.find(processHash._hash);
        if (registrations && *registrations == 1 && snapshot && snapshot->count == 1) {
            shard.registrations.take(scopeHash._hash);
            return shard.snapshots.take(processHash._hash).data;
        }
    }
    return Node::takeData(processHash, scopeHash, depth, port);
}

} // namespace ZR::Corvale
