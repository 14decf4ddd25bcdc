#pragma once

#include "corvale/runtime/scopetable.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ZR::Corvale {

class Data;
class Port;
class StringHash;

/// A vertex of the data-flow graph, and the protocol that binds all of them.
///
/// A computation of a process walks its graph twice. First `synchronize` goes from each sink up to the
/// sources: every source freezes its value for the process, every node counts its consumers. Then
/// `requestData` pulls the values down again, and each consumer gives its registration back as soon as
/// it has its value, so that a value goes with its last consumer:
///
///     synchronize                            request, interleaved with release
///
///     sink -> filter node -> source          sink <- filter node <- source
///                            (snapshot)           `--release--> `--release-->
///
/// `requestEmpty` instead of `requestData` means: run the releases, but compute nothing.
///
/// Three arguments travel along: `processHash`, the name of the computing process; `scopeHash`, where
/// in the nesting of filters the computation is, which is the name again at the top and grows by a
/// node's id with each filter that is entered; `depth`, a count of hops for diagnosis.
///
/// Ownership: held by `boost::shared_ptr`; a node owns its ports, which point back to it.
/// Threads: built by one thread. `synchronize`, `synchronizeRelease` and the requests are thread-safe
/// for different scopes; one scope is active in one thread at a time, which the process's lock ensures.
/// No lock of a node is held while a filter runs or while the walk goes upstream.
/// Failure: breaches of the protocol are logged at fatal level, and the computation goes on with no value.
class alignas(64) Node // nodes of two threads do not share a cache line
{
public:
    explicit Node(const std::string& name);
    /// Reports registrations that are still open, and goes on.
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    const std::string& getName() const { return _name; }
    /// Only while the graph is built.
    bool setName(const std::string& name);

    const std::vector<boost::shared_ptr<Port>>& getInputs() const { return _inputs; }
    const std::vector<boost::shared_ptr<Port>>& getOutputs() const { return _outputs; }
    void addInput(boost::shared_ptr<Port> port) { _inputs.push_back(port); }
    void addOutput(boost::shared_ptr<Port> port) { _outputs.push_back(port); }
    /// The first port of that name; for the empty name also the only port there is. Null if none fits.
    boost::shared_ptr<Port> getInput(const std::string& name) const;
    boost::shared_ptr<Port> getOutput(const std::string& name) const;

    /// Registers one consumer for a scope; at the first of them, registers this node upstream.
    virtual void synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    /// Gives one registration back. What lies upstream is released by the node itself, input by input.
    void synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash, long long depth);

    /// The value of an output. `port` is the link through which the request came: an output of this node
    /// or a port that stands for one; it is lent for the call. A process asks a sink with a null port.
    virtual boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                                long long depth, boost::shared_ptr<Port> port) = 0;
    virtual void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                              boost::shared_ptr<Port> port) = 0;

    /// `requestData`, then `synchronizeRelease`. What only this registration has kept is handed over: counts
    /// of references that processes share are what threads would wait for most.
    virtual boost::shared_ptr<Data> takeData(const StringHash& processHash, const StringHash& scopeHash,
                                             long long depth, boost::shared_ptr<Port> port);

    /// Drops what a computation that an exception ended has left here and upstream. Never throws.
    void abandon(const StringHash& processHash, const StringHash& scopeHash);

    /// How many scopes have something left in this node; 0 between computations.
    virtual std::size_t activeScopes();

protected:
    // Drops what this node alone keeps for a scope. False if it keeps nothing.
    virtual bool _forget(const StringHash& processHash, const StringHash& scopeHash);

    // Logs the counts that `forEach` shows to a visitor as `visit(key, count)`, if there are any. Never
    // throws.
    using Visitor = std::function<void(std::uint64_t key, std::uint32_t count)>;
    void _reportLeft(const std::string& logCategory, const char* title,
                     const std::function<void(const Visitor&)>& forEach);
    // The same for registrations, in the words of every node.
    void _reportRegistrations(const std::function<void(const Visitor&)>& forEach);

    ScopeTable _scopes;

private:
    // What a kind of node does at every arrival; takes one registration back, false if there is none.
    virtual void _arrive(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                         long long depth);
    virtual bool _release(const StringHash& processHash, const StringHash& scopeHash, long long depth);
    // What a kind of node does when `_release` takes one back.
    virtual void _leave(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                        long long depth);

    std::string _name;

protected:
    std::vector<boost::shared_ptr<Port>> _inputs;  // fixed once the graph is built
    std::vector<boost::shared_ptr<Port>> _outputs; // fixed once the graph is built
};

} // namespace ZR::Corvale
