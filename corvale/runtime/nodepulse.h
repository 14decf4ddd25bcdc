#pragma once

#include "corvale/runtime/nodesource.h"

namespace ZR::Corvale {

/// A source that delivers a value to one computation and then falls back to a default.
///
/// The value goes to the first process that registers after `setData`; the fall back counts as a
/// change. With a null default the pulse then stands still; with another, every computation is a
/// change, and a process that watches the pulse goes on computing at its frequency.
/// Threads: as `NodeSource`; the default is set while the graph is built.
class NodePulse : public NodeSource
{
public:
    explicit NodePulse(const std::string& name);
    ~NodePulse() override;

    /// The value at rest, and the present one too. No change in the sense of `getUid`.
    void setDefaultData(boost::shared_ptr<Data> value);
    boost::shared_ptr<Data> getDefaultData() const;

private:
    boost::shared_ptr<Data> _freeze() override;

    boost::shared_ptr<Data> _defaultData; // guarded by _sourceLock
};

} // namespace ZR::Corvale
