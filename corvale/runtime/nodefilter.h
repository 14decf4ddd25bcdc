#pragma once

#include "corvale/runtime/node.h"

namespace ZR::Corvale {

class Filter;

/// A filter's place in a graph: asks the inputs, applies the filter once per scope, and keeps all its
/// outputs until the last consumer has taken its own.
///
/// The node's ports stand for the filter's, one each. The filter computes in an inner scope, whose text
/// is that of the outer scope followed by this node's id, so that one filter object can be used at
/// many places of a computation.
/// Ownership: shares the filter. Threads: as `Node`; the filter runs with no lock of the node held.
/// Failure: a mandatory input without value aborts the filter, and every output reads as null. What a
/// filter throws passes through; the registrations of that computation are left behind, to be abandoned.
class NodeFilter : public Node
{
public:
    /// The filter must not be null.
    NodeFilter(const std::string& name, boost::shared_ptr<Filter> filter);
    ~NodeFilter() override;

    const boost::shared_ptr<Filter>& getFilter() const { return _filter; }

    boost::shared_ptr<Data> requestData(const StringHash& processHash, const StringHash& scopeHash,
                                        long long depth, boost::shared_ptr<Port> port) override;
    void requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                      boost::shared_ptr<Port> port) override;
    boost::shared_ptr<Data> takeData(const StringHash& processHash, const StringHash& scopeHash,
                                     long long depth, boost::shared_ptr<Port> port) override;

    /// Drops what a computation that an exception ended has left inside the filter and upstream, which other
    /// nodes share; what is left in this node stays, to be reported. Never throws.
    void abandonShared(const StringHash& processHash, const StringHash& scopeHash);
    /// Lets go of the values that breaches of the protocol have left here; counts stay, to be reported. While
    /// nothing computes.
    void clearValues();
    /// Drops what the filter remembers for a scope.
    void forget(const StringHash& processHash, const StringHash& scopeHash);

    /// The node as a cluster of a DOT graph, opened `depth` levels deep.
    std::string dumpToDot(long& counter, int depth) const;

private:
    void _arrive(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                 long long depth) override;
    void _leave(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                long long depth) override;

    bool _forget(const StringHash& processHash, const StringHash& scopeHash) override;

    ScopeState& _stateOf(const StringHash& scopeHash);
    const StringHash& _innerScope(ScopeState& state, const StringHash& scopeHash) const;
    bool _pullInputs(ScopeState& state, const StringHash& processHash, const StringHash& scopeHash,
                     long long depth);
    ScopeState* _computed(const StringHash& processHash, const StringHash& scopeHash, long long depth,
                          const Port* port);
    boost::shared_ptr<Data>* _resultFor(ScopeState& state, const Port* port) const;
    void _fault(const char* operation, const StringHash& processHash, const std::string& text) const;

    const boost::shared_ptr<Filter> _filter;
    const std::string _uniqueId; // "__" and digits of this node's address; stands in scope texts alone
};

} // namespace ZR::Corvale
