#pragma once

#include "corvale/data/datatype.h"
#include "corvale/runtime/flattable.h"
#include "corvale/runtime/shortlock.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace ZR::Corvale {

class Data;
class Node;
class StringHash;

/// The place where a value enters or leaves a node or a filter.
///
/// An input pulls its value from the one output that it is attached to; when nothing comes it gives
/// its default, which may be null: no value. A port may stand for another one, its parent, one level
/// further in:
///
///     composite's port --parent--> inner node's port --parent--> filter's port
///
/// The innermost port of such a chain declares the types; defaults and the optional flag may stand
/// anywhere on it. A composite filter loads the values of its inputs on its ports for one scope.
///
/// Ownership: held by `boost::shared_ptr`, by its node or filter, by the ports attached to it and by
/// its children. The node is a back pointer that owns nothing and outlives the port's use.
/// Threads: built and attached by one thread; requests, releases, `loadData` and
/// `unloadData` are thread-safe afterwards.
/// Failure: a pull that cannot be answered gives null and one error line; nothing throws.
class Port
{
public:
    explicit Port(const std::string& name, boost::shared_ptr<Port> parent = boost::shared_ptr<Port>(),
                  Node* node = nullptr);

    const std::string& getName() const { return _name; }
    const boost::shared_ptr<Port>& getParent() const { return _parent; }
    /// The innermost port of the chain; null for a port without parent.
    boost::shared_ptr<Port> getRecursiveParent() const;
    const std::vector<boost::shared_ptr<Port>>& getLinks() const { return _links; }
    bool bound() const { return !_links.empty(); }
    /// The node behind the first link; null if there is none.
    Node* getUpstream() const;
    /// Joins this input to an output. Nothing is checked: the pull reports a second link.
    void attach(const boost::shared_ptr<Port>& upstream) { _links.push_back(upstream); }
    /// The node of this port or of the nearest port of the chain that has one; null if none has.
    Node* getNode() const;

    /// The types that the innermost port of the chain declares; none means every type.
    const std::vector<DataType>& getTypes() const;
    /// Declares an accepted type on this very port, and gives the port back for the next.
    Port& addType(DataType type);
    bool isCompatible(DataType type) const;
    /// Whether a type passes both ports.
    bool isCompatible(boost::shared_ptr<Port> other) const;

    void setDefaultData(boost::shared_ptr<Data> value) { _defaultData = value; }
    /// The first default along the chain, null if there is none.
    const boost::shared_ptr<Data>& getDefaultData() const;
    /// Whether a filter may run without this input: it is marked so, or a default exists, anywhere on the
    /// chain.
    bool isOptional() const;
    void setOptional(bool optional) { _optional = optional; }

    /// A port for the time of a call. Its owner holds it meanwhile, so no count has to move.
    static boost::shared_ptr<Port> lend(const boost::shared_ptr<Port>& port)
    {
        return boost::shared_ptr<Port>(boost::shared_ptr<Port>(), port.get());
    }

    /// The value of this input in a scope: the loaded one, which may be null, or what comes through
    /// the link, or a default.
    boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                        long long depth);
    /// `requestData`, then `synchronizeRelease`: what a consumer does with each of its inputs.
    boost::shared_ptr<Data> takeData(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth);
    /// Tells what lies upstream that this scope's value will not be used.
    void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    /// Gives back one registration of the upstream node.
    void synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash, long long depth);

    /// Loads `values[i]` on `ports[i]` and on its chain, up to the first port of a node, for one scope; that
    /// last port keeps it for all of them. There are at least as many values as ports.
    static void loadData(std::vector<boost::shared_ptr<Port>>& ports,
                         const std::vector<boost::shared_ptr<Data>>& values, const StringHash& processHash,
                         const StringHash& scopeHash, long long depth);
    static void unloadData(std::vector<boost::shared_ptr<Port>>& ports, const StringHash& processHash,
                           const StringHash& scopeHash, long long depth);

private:
    void _load(const boost::shared_ptr<Data>& value, const StringHash& scopeHash) const;
    void _unload(const StringHash& scopeHash) const;
    const Port& _loadedPort() const;
    bool _findLoaded(const StringHash& scopeHash, boost::shared_ptr<Data>* value) const;
    // The node behind the single link; null, with an error line for each way in which a graph can be wrong.
    Node* _upstream(const char* operation) const;

    const std::string _name;
    const boost::shared_ptr<Port> _parent;
    Node* const _node; // not owned

    // Written while the graph is built, read without a lock while it runs.
    std::vector<boost::shared_ptr<Port>> _links;
    std::vector<DataType> _types;
    boost::shared_ptr<Data> _defaultData;
    bool _optional = false;

    // How many scopes have a value loaded: most ports never have one, and then need no lock.
    alignas(64) mutable std::atomic<std::uint32_t> _loadedCount{0};
    mutable ShortLock _loadedDataLock;
    mutable FlatTable<boost::shared_ptr<Data>> _loadedData; // by scope, guarded by _loadedDataLock
};

} // namespace ZR::Corvale
