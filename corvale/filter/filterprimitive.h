#pragma once

#include "corvale/filter/filter.h"

namespace ZR::Corvale {

/// A filter without inner structure: its `applyFilter` is code.
///
/// A derived class adds its ports in its constructor and overrides `applyFilter`, nothing else.
/// Threads: as `Filter`.
class FilterPrimitive : public Filter
{
public:
    explicit FilterPrimitive(const std::string& name) : Filter(name) {}

    void abortFilter(const StringHash& processHash, const StringHash& scopeHash, long long depth) override;
    std::string dumpToDot(long& counter, int depth) const override;

protected:
    /// Appends a port that is mandatory and accepts every type, and gives it back for refinement.
    boost::shared_ptr<Port> _addInput(const std::string& name);
    boost::shared_ptr<Port> _addOutput(const std::string& name);
};

} // namespace ZR::Corvale
