#include "corvale/runtime/nodepulse.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

NodePulse::NodePulse(const std::string& name) : NodeSource(name) {}

NodePulse::~NodePulse() = default;

void NodePulse::setDefaultData(boost::shared_ptr<Data> value)
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    _defaultData = value;
    _data = value;
}

boost::shared_ptr<Data> NodePulse::getDefaultData() const
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _defaultData;
}

void NodePulse::_synchronize(const StringHash& processHash, const StringHash&, long long)
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    const auto [snapshot, first] = _snapshots.insert(processHash._hash);
    if (first) {
        snapshot->data = _data;
        if (_data) {
            _data = _defaultData;
            ++_uid;
        }
    }
    ++snapshot->count;
}

} // namespace ZR::Corvale
