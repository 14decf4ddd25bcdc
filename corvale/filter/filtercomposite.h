#pragma once

#include "corvale/filter/filter.h"

#include <map>

namespace ZR::Corvale {

class NodeFilter;

/// A filter made of other filters: inner nodes, links between them, and inner ports that are exported as
/// its own.
///
///     input x --> [ node a ] --> [ node b ] --> output y
///                      `-------> [ node c ] --> output z
///
/// `applyFilter` loads its inputs on the exported ports for the scope, pulls each output from the inner
/// node behind it, and unloads the inputs: inner nodes run by the same protocol that a process drives, on
/// the calling thread. An inner node from which no exported output can be reached costs nothing.
/// Every exported input is optional; the inner node decides whether it needs a value.
/// Ownership: owns its nodes, which share their filters. Threads: built by one thread, thread-safe
/// afterwards. Failure: false or null and an error line, but for ports, which are passed over silently.
class FilterComposite : public Filter
{
public:
    explicit FilterComposite(const std::string& name);
    ~FilterComposite() override;

    /// False if a node of that name is present.
    bool addNode(boost::shared_ptr<NodeFilter> node);
    boost::shared_ptr<NodeFilter> getNode(const std::string& name) const;
    /// Makes an inner port one of the filter's own. False if node or port is unknown; an empty port name
    /// means the node's only one.
    bool exportInput(const std::string& node, const std::string& port, const std::string& name);
    bool exportOutput(const std::string& node, const std::string& port, const std::string& name);
    /// Finds the depth of the graph as it is linked now; linear in its size.
    std::size_t measureDepth();

    /// Lets go of the values that breaches of the protocol have left in inner nodes. While nothing computes.
    void clearValues();

    void synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth) override;
    void synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash,
                            long long depth) override;
    std::vector<boost::shared_ptr<Data>> applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs,
                                                     const StringHash& processHash,
                                                     const StringHash& scopeHash, long long depth) override;
    void abortFilter(const StringHash& processHash, const StringHash& scopeHash, long long depth) override;
    void abandon(const StringHash& processHash, const StringHash& scopeHash) override;
    void forget(const StringHash& processHash, const StringHash& scopeHash) override;
    std::string dumpToDot(long& counter, int depth) const override;

private:
    std::map<std::string, boost::shared_ptr<NodeFilter>> _nodes; // fixed once the filter is built
};

} // namespace ZR::Corvale
