#pragma once

#include "corvale/runtime/node.h"
#include "corvale/runtime/shortlock.h"

namespace ZR::Corvale {

/// A vertex without inputs, through which values enter the graph.
///
/// A value may be set at any moment, on any thread. At its first registration for a process the source
/// takes a snapshot, and that computation sees the snapshot to its end; a value set meanwhile is for
/// the next one. Snapshots are kept by process, not by scope: all scopes of a process see one value.
/// One output port, "out".
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

    mutable ShortLock _sourceLock;
    boost::shared_ptr<Data> _data;  // guarded by _sourceLock
    std::uint64_t _uid = 0;         // guarded by _sourceLock
    FlatTable<Snapshot> _snapshots; // by process, guarded by _sourceLock

    // Also for a second process of that name, should one compute at this moment.
    bool _forget(const StringHash& processHash, const StringHash& scopeHash) override;

private:
    // Processes of one name, of which one has left the engine's table, share a scope here and nowhere else:
    // what a source keeps is under a lock.
    void _arrive(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                 long long depth) final;
    bool _release(const StringHash& processHash, const StringHash& scopeHash, long long depth) final;

    virtual void _synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    virtual void _synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth);

    std::vector<std::string> _dependencies; // fixed once the source is built
};

} // namespace ZR::Corvale
