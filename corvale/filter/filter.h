#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace ZR::Corvale {

class Data;
class MemoryManager;
class Port;
class StringHash;

/// The unit of computation: a name, input ports, output ports, and `applyFilter`, which turns values
/// of the inputs into values of the outputs.
///
/// A `NodeFilter` places a filter into a graph. Its life in one computation, for each scope:
///
///     synchronize -> applyFilter or abortFilter -> synchronizeRelease
///
/// Ownership: held by `boost::shared_ptr`, by the engine's table and by every node that uses it. The
/// memory manager is not owned; the engine, which owns it, outlives its filters' use.
/// Threads: built by one thread, thread-safe afterwards. One object serves all nodes and processes at
/// once, so a filter keeps what it computes in locals or in the `MemoryManager`, never in members.
class Filter
{
public:
    explicit Filter(const std::string& name) : _name(name) {}
    virtual ~Filter();
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    const std::string& getName() const { return _name; }
    const std::vector<boost::shared_ptr<Port>>& getInputs() const { return _inputs; }
    const std::vector<boost::shared_ptr<Port>>& getOutputs() const { return _outputs; }
    /// The first port of that name; for the empty name also the only port there is. Null if none fits.
    boost::shared_ptr<Port> getInput(const std::string& name) const;
    boost::shared_ptr<Port> getOutput(const std::string& name) const;

    /// How many nodes and filters call one another on the longest way through the filter, itself included.
    std::size_t depth() const { return _depth; }

    void bindMemoryManager(MemoryManager* memoryManager) { _memoryManager = memoryManager; }

    virtual std::string getDescription() const;

    /// Registers what lies inside the filter for a computation, and releases it again.
    virtual void synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    virtual void synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                                    long long depth);

    /// Computes. `inputs` holds one value per input port, in their order; null where an optional input
    /// has none. The result holds one value per output port, in their order; null or missing means that
    /// the output has no value in this computation.
    /// `processHash` and `scopeHash` together name the place of this call: the key for kept memory.
    virtual std::vector<boost::shared_ptr<Data>>
    applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs, const StringHash& processHash,
                const StringHash& scopeHash, long long depth) = 0;
    /// As `applyFilter`, for a caller who needs the inputs no more; they are left in any state. A filter that
    /// hands values on moves them: counts of references are what the cheapest filters cost most by.
    virtual std::vector<boost::shared_ptr<Data>> consume(std::vector<boost::shared_ptr<Data>>& inputs,
                                                         const StringHash& processHash,
                                                         const StringHash& scopeHash, long long depth);
    /// Called instead of `applyFilter` when there is nothing to compute from.
    virtual void abortFilter(const StringHash& processHash, const StringHash& scopeHash, long long depth) = 0;

    /// Drops what a computation that an exception ended has left inside the filter. Must not throw.
    virtual void abandon(const StringHash& processHash, const StringHash& scopeHash);

    /// Drops what the filter remembers for a scope: its next computation there is the first.
    virtual void forget(const StringHash& processHash, const StringHash& scopeHash);

    /// The filter as a cluster of a DOT graph, opened `depth` levels deep.
    virtual std::string dumpToDot(long& counter, int depth) const = 0;

protected:
    const std::string _name;
    std::vector<boost::shared_ptr<Port>> _inputs;  // fixed once the filter is built
    std::vector<boost::shared_ptr<Port>> _outputs; // fixed once the filter is built
    std::size_t _depth = 1;                        // fixed once the filter is built
    MemoryManager* _memoryManager = nullptr;       // not owned
};

} // namespace ZR::Corvale
