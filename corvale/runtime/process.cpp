#include "corvale/runtime/process.h"

#include "corvale/data/data.h"
#include "corvale/runtime/aggregatedsink.h"
#include "corvale/runtime/clock.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/locks.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.process");

// Microseconds, truncated; what 64 bits can not hold is their greatest value, and their lowest for what
// is not a number.
std::int64_t period(float frequency)
{
    const float microseconds = 1000000.0f / frequency;
    if (std::isnan(microseconds) || microseconds < -0x1p63f)
        return std::numeric_limits<std::int64_t>::min();
    if (microseconds >= 0x1p63f)
        return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(microseconds);
}

} // namespace

Process::Process(const std::string& name, boost::shared_ptr<NodeFilter> node, unsigned int priority,
                 float frequency)
    : _nameHash(name),
      _computedName(_nameHash),
      _frequency(frequency),
      _priority(std::min(priority, maximumPriority)),
      _mainNode(node)
{
}

Process::~Process() = default;

const std::string& Process::getName() const
{
    const boost::lock_guard<ShortLock> guard(_nameLock);
    return *_nameHash._string;
}

StringHash Process::getNameHash() const
{
    const boost::lock_guard<ShortLock> guard(_nameLock);
    return _nameHash;
}

bool Process::setName(const std::string& name)
{
    setName(StringHash(name));
    return true;
}

void Process::setName(const StringHash& name) noexcept
{
    StringHash former = name; // ends after the lock
    const boost::lock_guard<ShortLock> guard(_nameLock);
    std::swap(_nameHash, former);
    _renamed.store(true, std::memory_order_release);
}

bool Process::setDescription(const std::string& description)
{
    _description = description;
    return true;
}

bool Process::setPriority(unsigned int priority)
{
    _priority = std::min(priority, maximumPriority);
    return true;
}

bool Process::setFrequency(float frequency)
{
    _frequency = frequency > 0.0f ? frequency : 0.0f; // 0 also for what is not a number
    return true;
}

bool Process::addSource(boost::shared_ptr<NodeSource> source)
{
    return _sources.emplace(source->getName(), source).second;
}

bool Process::watchSource(boost::shared_ptr<NodeSource> source)
{
    return !_watchedSources.emplace(source, _neverSeen).second;
}

bool Process::addSink(boost::shared_ptr<NodeSink> sink)
{
    const bool added = _sinks.emplace(sink->getName(), sink).second;
    if (!added)
        RK_LOG(rk::log::Error, category) << "Can't add sink to process. Sink already present.";
    return added;
}

bool Process::addAggregatedSink(boost::shared_ptr<AggregatedSink> sink)
{
    const bool added = _aggregatedSinks.emplace(sink->getName(), sink).second;
    if (!added)
        RK_LOG(rk::log::Error, category)
            << "Can't add aggregated sink to process. Aggregated sink already present.";
    return added;
}

void Process::clearEvents()
{
    for (const auto& entry : _sinks)
        entry.second->clearEvents();
    for (const auto& entry : _aggregatedSinks)
        entry.second->clearEvents();
}

std::int64_t Process::getDueTime() const
{
    return wrappingSum(_lastComputationTime, period(_frequency));
}

bool Process::isValid() const
{
    return _frequency <= 0.0f || getDueTime() > currentMicroseconds();
}

void Process::validate()
{
    _lastComputationTime = currentMicroseconds();
}

long long Process::getTimeToLive(long long now) const
{
    const boost::unique_lock lock(_lock, boost::try_to_lock);
    return lock ? wrappingDifference(getDueTime(), now) : period(_frequency);
}

bool Process::update()
{
    const boost::lock_guard guard(_lock);
    if (!isActive())
        return false;
    if (isValid())
        return true;
    if (_noteChanges())
        _compute();
    else
        validate(); // so that the sources are not polled faster than the frequency
    return true;
}

// A source that was never set, or that stands for another process, has the count 0: always a change.
bool Process::_noteChanges()
{
    bool changed = false;
    for (auto& [source, seen] : _watchedSources) {
        const std::uint64_t uid = source->getUid();
        if (uid != 0 && uid == seen)
            continue;
        seen = uid;
        changed = true;
    }
    return changed;
}

// A copy, so that a renaming beside it shows from the next computation on.
const StringHash& Process::_presentName()
{
    if (_renamed.load(std::memory_order_relaxed) && _renamed.exchange(false, std::memory_order_acquire))
        _computedName = getNameHash();
    return _computedName;
}

// What an exception leaves in nodes that other processes share goes at once: a later process of this name
// would be taken for this one.
void Process::_compute()
{
    if (_broken)
        for (const auto& entry : _sinks)
            entry.second->abandon(_computedName, _computedName);
    _broken = true;
    const StringHash& name = _presentName();
    try {
        _computeSinks(name);
        _broken = false;
    } catch (...) {
        if (_mainNode)
            _mainNode->abandonShared(name, name);
        throw;
    }
}

// The period starts when the sources are frozen, however long the filters take.
void Process::_computeSinks(const StringHash& name)
{
    const StringHash& scope = name;
    for (const auto& entry : _sinks)
        entry.second->synchronize(name, scope, 0);
    validate();
    for (const auto& entry : _sinks)
        entry.second->requestData(name, scope, 0, boost::shared_ptr<Port>());
    for (const auto& entry : _aggregatedSinks)
        entry.second->update();
}

boost::shared_ptr<Data> Process::getData(const std::string& sinkName)
{
    if (!_ownsSink(sinkName)) {
        RK_LOG(rk::log::Error, category) << "getData(" << sinkName << "): the process "
                                         << *getNameHash()._string << " doesn't own this sink node.";
        return boost::shared_ptr<Data>();
    }
    update();
    return getLastData(sinkName);
}

boost::shared_ptr<Data> Process::getLastData(const std::string& sinkName) const
{
    if (!_ownsSink(sinkName)) {
        RK_LOG(rk::log::Error, category) << "Can't get last data from sink \"" << sinkName << "\": process \""
                                         << *getNameHash()._string << "\" doesn't own this sink node.";
        return boost::shared_ptr<Data>();
    }
    if (!isActive())
        return boost::shared_ptr<Data>();
    const auto aggregated = _aggregatedSinks.find(sinkName);
    return aggregated != _aggregatedSinks.end() ? aggregated->second->getLastData()
                                                : _sinks.find(sinkName)->second->getLastData();
}

bool Process::_ownsSink(const std::string& sinkName) const
{
    return _sinks.count(sinkName) != 0 || _aggregatedSinks.count(sinkName) != 0;
}

bool Process::reset()
{
    const boost::lock_guard guard(_lock);
    _lastComputationTime = 0;
    for (auto& watched : _watchedSources)
        watched.second = _neverSeen;
    for (const auto& entry : _sinks)
        entry.second->reset();
    for (const auto& entry : _aggregatedSinks)
        entry.second->update();
    return true;
}

} // namespace ZR::Corvale
