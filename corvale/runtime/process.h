#pragma once

#include "corvale/data/orderedmutex.h"
#include "corvale/runtime/shortlock.h"
#include "corvale/runtime/stringhash.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ZR::Corvale {

class AggregatedSink;
class Data;
class NodeFilter;
class NodeSink;
class NodeSource;

/// A unit of computation: sinks to be pulled, sources to be watched, a frequency and a priority.
///
/// `update` computes if the process is active, its period has passed and a watched source has changed:
///
///     update -> active? -> period over? -> source changed? -> synchronize all sinks   (sources frozen)
///                                                          -> request all sinks       (filters run)
///                                                          -> update aggregated sinks
///
/// Ownership: shares its nodes. Threads: built by one thread, then thread-safe; computations and resets
/// of one process exclude each other. Different processes run in parallel, also through shared nodes.
/// An upstream process's lock is taken under a downstream one's.
/// Failure: false or null and one error line. What a filter or callback throws passes through. The
/// registrations of that computation stay behind in this process's own nodes, and the next one drops them.
class Process
{
public:
    static constexpr unsigned int maximumPriority = 8;
    static constexpr unsigned int defaultPriority = 3;
    static constexpr float defaultFrequency = 1.0f; // hertz

    Process(const std::string& name, boost::shared_ptr<NodeFilter> node, unsigned int priority,
            float frequency);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Valid until the process is renamed; `getNameHash` holds its text for good.
    const std::string& getName() const;
    StringHash getNameHash() const;
    /// Shows from the next computation on. True.
    bool setName(const std::string& name);
    void setName(const StringHash& name) noexcept;
    /// Guarded by the owner, as is the setter.
    const std::string& getDescription() const { return _description; }
    bool setDescription(const std::string& description);

    const std::map<std::string, boost::shared_ptr<NodeSource>>& getSources() const { return _sources; }
    const std::map<std::string, boost::shared_ptr<NodeSink>>& getSinks() const { return _sinks; }
    const std::map<std::string, boost::shared_ptr<AggregatedSink>>& getAggregatedSinks() const
    {
        return _aggregatedSinks;
    }

    /// 0, never scheduled, to 8.
    unsigned int getPriority() const { return _priority; }
    bool setPriority(unsigned int priority);
    /// The highest rate of computations, in hertz; 0 or less stands still.
    float getFrequency() const { return _frequency; }
    bool setFrequency(float frequency);

    void enable() { _enabled = true; }
    void disable() { _enabled = false; }
    /// A zombie runs although it is disabled, because an active process reads it.
    void zombify() { _zombie = true; }
    void unZombify() { _zombie = false; }
    bool isEnable() const { return _enabled; }
    bool isZombie() const { return _zombie; }
    bool isActive() const { return _enabled || _zombie; }

    /// False if a source of that node name is present.
    bool addSource(boost::shared_ptr<NodeSource> source);
    /// True if the source is watched already: the reverse of `addSource`.
    bool watchSource(boost::shared_ptr<NodeSource> source);
    bool addSink(boost::shared_ptr<NodeSink> sink);
    bool addAggregatedSink(boost::shared_ptr<AggregatedSink> sink);
    /// Keeps a source alive that the graph is joined to but that no name of the process shows.
    void holdSource(boost::shared_ptr<NodeSource> source) { _heldSources.push_back(source); }
    /// Lets go of all events of its sinks, which may hold processes that hold this one.
    void clearEvents();

    /// Whether the last result may stand: the period is not over, or the process stands still.
    bool isValid() const;
    /// Starts a new period now.
    void validate();
    /// When the period is over, in microseconds since the epoch; of no meaning for a process that stands
    /// still.
    std::int64_t getDueTime() const;
    /// Microseconds until the period is over, negative when overdue; the whole period while computing.
    /// `now` is in microseconds since the epoch. Never waits.
    long long getTimeToLive(long long now) const;

    /// Computes if it is due. False if the process is not active.
    bool update();
    /// Computes if it is due, then gives the last value of a sink or aggregated sink; an aggregated one
    /// wins. Null while the process is not active.
    boost::shared_ptr<Data> getData(const std::string& sinkName);
    boost::shared_ptr<Data> getLastData(const std::string& sinkName) const;
    /// Forgets all results; the next `update` computes. True.
    bool reset();

private:
    bool _ownsSink(const std::string& sinkName) const;
    const StringHash& _presentName();
    bool _noteChanges();
    void _compute();
    void _computeSinks(const StringHash& name);

    static constexpr std::uint64_t _neverSeen = ~std::uint64_t(0);

    mutable OrderedMutex<LockRank::Process> _lock; // held for a whole computation or reset
    std::map<boost::shared_ptr<NodeSource>, std::uint64_t>
        _watchedSources; // last change seen; guarded by _lock

    mutable ShortLock _nameLock;
    StringHash _nameHash; // guarded by _nameLock
    std::atomic<bool> _renamed{false};
    StringHash _computedName; // as of the last computation; guarded by _lock
    bool _broken = false;     // an exception ended the last computation; guarded by _lock

    std::atomic<std::int64_t> _lastComputationTime{0}; // microseconds since the epoch; 0 for never
    std::atomic<float> _frequency;
    std::atomic<std::uint32_t> _priority;
    std::atomic<bool> _enabled{true};
    std::atomic<bool> _zombie{false};

    std::string _description;

    // Fixed once the process is built.
    const boost::shared_ptr<NodeFilter> _mainNode;
    std::map<std::string, boost::shared_ptr<NodeSource>> _sources;
    std::vector<boost::shared_ptr<NodeSource>> _heldSources;
    std::map<std::string, boost::shared_ptr<NodeSink>> _sinks;
    std::map<std::string, boost::shared_ptr<AggregatedSink>> _aggregatedSinks;
};

} // namespace ZR::Corvale
