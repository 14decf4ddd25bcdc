#pragma once

#include "corvale/runtime/nodesource.h"

namespace ZR::Corvale {

class Process;

/// A source that gives the last result of a sink of another process, which computes on demand.
///
/// The upstream process runs while the downstream one registers, before any filter of the latter; its
/// own frequency still rules. Graphs of processes must be acyclic, or their locks wait for one another.
/// Ownership: shares the upstream process. Threads: thread-safe.
class NodeProcessSource : public NodeSource
{
public:
    /// `sinkName` is a sink or an aggregated sink of the process.
    NodeProcessSource(const std::string& name, boost::shared_ptr<Process> process,
                      const std::string& sinkName);
    ~NodeProcessSource() override;

    /// Always 0, which counts as a change each time: a process that watches this source asks for the
    /// upstream result in each of its periods.
    std::uint64_t getUid() const override;

private:
    void _synchronize(const StringHash& processHash, const StringHash& scopeHash, long long depth) override;

    boost::shared_ptr<Process> _process; // fixed until the end
    const std::string _sinkName;
};

} // namespace ZR::Corvale
