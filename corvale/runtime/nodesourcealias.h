#pragma once

#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/shortlock.h"

namespace ZR::Corvale {

/// A source without a value of its own: forwards everything to another one, which can be changed while
/// processes run.
///
/// Graphs are joined to the alias's own "out", so nothing is rebuilt. A computation that is under way
/// when the target changes finds no snapshot at the new one, logs that and reads null; it leaves its
/// registration at the old one. Later computations are sound.
/// Ownership: shares its target. Threads: thread-safe.
class NodeSourceAlias : public NodeSource
{
public:
    NodeSourceAlias(const std::string& name, boost::shared_ptr<NodeSource> source);
    ~NodeSourceAlias() override;

    boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                        long long depth, boost::shared_ptr<Port> port) override;
    void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                      boost::shared_ptr<Port> port) override;
    boost::shared_ptr<Data> takeData(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth, boost::shared_ptr<Port> port) override;
    bool setData(boost::shared_ptr<Data> value) override;
    boost::shared_ptr<Data> getData() const override;
    std::uint64_t getUid() const override;

    virtual void setSource(boost::shared_ptr<NodeSource> source);
    virtual boost::shared_ptr<NodeSource> getSource() const;

private:
    bool _forget(const StringHash& processHash, const StringHash& scopeHash) override;
    void _synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth) override;
    void _synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                             long long depth) override;

    mutable ShortLock _aliasLock;
    boost::shared_ptr<NodeSource> _source; // guarded by _aliasLock
};

} // namespace ZR::Corvale
