#pragma once

#include "corvale/runtime/flattable.h"
#include "corvale/runtime/node.h"
#include "corvale/runtime/shortlock.h"

#include <array>
#include <atomic>

namespace ZR::Corvale {

/// A vertex without inputs, through which values enter the graph.
///
/// A value may be set at any moment, on any thread. At its first registration for a process the source
/// takes a snapshot, and that computation sees the snapshot to its end; a value set meanwhile is for
/// the next one. Snapshots are kept by process, not by scope: all scopes of a process see one value.
/// One output port, "out".
///
///     _data, _uid     what hosts set: a process touches it once a computation
///     _shards[8]      what processes keep here: mostly one of its own for each, so that they do not wait
///
/// Threads: thread-safe. Failure: a read without snapshot is logged at fatal level and gives null.
class NodeSource : public Node
{
public:
    explicit NodeSource(const std::string& name);
    ~NodeSource() override;

    boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                        long long depth, boost::shared_ptr<Port> port) override;
    void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                      boost::shared_ptr<Port> port) override;
    void synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth) final;
    boost::shared_ptr<Data> takeData(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth, boost::shared_ptr<Port> port) override;
    std::size_t activeScopes() override;

    /// Sets the value, null meaning none. A change even if it is the same pointer again. True.
    virtual bool setData(boost::shared_ptr<Data> value);
    /// Sets the value of this very node and gives the former one back, so that the caller can let it end
    /// where no lock is held.
    void exchangeData(boost::shared_ptr<Data>& value);
    /// The present value, not a snapshot.
    virtual boost::shared_ptr<Data> getData() const;
    /// Counts the changes; 0 before the first.
    virtual std::uint64_t getUid() const;

    /// Notes a process whose result feeds this source. Only while the source is built.
    void addDependency(const std::string& process) { _dependencies.push_back(process); }
    const std::vector<std::string>& getDependencies() const { return _dependencies; }

protected:
    struct Snapshot
    {
        std::uint32_t count = 0; // registrations that are not released
        boost::shared_ptr<Data> data;
    };

    // Processes of one name, of which one has left the engine's table, share a scope here and nowhere else:
    // what a source keeps is under a lock.
    struct alignas(64) Shard
    {
        ShortLock lock{LockRank::Snapshots};
        FlatTable<std::uint32_t> registrations; // not released, by scope; guarded by lock
        FlatTable<Snapshot> snapshots;          // by process; guarded by lock
    };
    // Of a scope or process; that of a process's outermost scope is the process's.
    Shard& _shardOf(const StringHash& key);

    // The value for a new snapshot. Caller holds the lock of a shard.
    virtual boost::shared_ptr<Data> _freeze();

    // Also for a second process of that name, should one compute at this moment.
    bool _forget(const StringHash& processHash, const StringHash& scopeHash) override;

    alignas(64) mutable ShortLock _sourceLock;
    boost::shared_ptr<Data> _data;      // guarded by _sourceLock
    std::atomic<std::uint64_t> _uid{0}; // written under _sourceLock, after _data

private:
    bool _release(const StringHash& processHash, const StringHash& scopeHash, long long depth) final;

    virtual void _synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    virtual void _synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth);

    void _forEachRegistration(const Visitor& visit);

    static constexpr int shardBits = 3; // of a mixed key
    std::array<Shard, 1 << shardBits> _shards;
    std::vector<std::string> _dependencies; // fixed once the source is built
};

} // namespace ZR::Corvale
