#include "corvale/runtime/nodepulse.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

NodePulse::NodePulse(const std::string& name) : NodeSource(name) {}

NodePulse::~NodePulse() = default;

void NodePulse::setDefaultData(boost::shared_ptr<Data> value)
{
    boost::shared_ptr<Data> present = value; // the former values end after the lock
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    _defaultData.swap(value);
    _data.swap(present);
}

boost::shared_ptr<Data> NodePulse::getDefaultData() const
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    return _defaultData;
}

boost::shared_ptr<Data> NodePulse::_freeze()
{
    const boost::lock_guard<ShortLock> guard(_sourceLock);
    boost::shared_ptr<Data> value = _data;
    if (value) {
        if (value != _defaultData) // else it stays, without a count that has to move
            _data = _defaultData;
        _uid.fetch_add(1, std::memory_order_release);
    }
    return value;
}

} // namespace ZR::Corvale
