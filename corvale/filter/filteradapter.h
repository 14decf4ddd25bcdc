#pragma once

#include "corvale/data/orderedmutex.h"
#include "corvale/filter/filterprimitive.h"

namespace ZR::Corvale {

class UserFilter;

/// A host's filter in the engine's terms: reads the declarations once and forwards each computation.
///
/// A declaration that can not be read is logged and passed over, so the filter may end up with fewer
/// ports than it declares.
/// Ownership: shares the user filter. Threads: thread-safe; a user filter with local data runs one call
/// at a time, and sees in each call the data of that place in that process.
class FilterAdapter : public FilterPrimitive
{
public:
    explicit FilterAdapter(boost::shared_ptr<UserFilter> userFilter);
    ~FilterAdapter() override;

    std::string getDescription() const override;
    std::vector<boost::shared_ptr<Data>> applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs,
                                                     const StringHash& processHash,
                                                     const StringHash& scopeHash, long long depth) override;
    void forget(const StringHash& processHash, const StringHash& scopeHash) override;

private:
    void _declareInput(const std::string& declaration);
    void _declareOutput(const std::string& declaration);
    void _addTypes(Port& port, const std::string& types);

    const boost::shared_ptr<UserFilter> _userFilter;
    OrderedMutex<LockRank::FilterAdapter> _adapterLock; // guards the local data of _userFilter for a call
};

} // namespace ZR::Corvale
