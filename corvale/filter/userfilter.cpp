#include "corvale/filter/userfilter.h"

#include "corvale/data/data.h"

namespace ZR::Corvale {

UserFilter::UserFilter() = default;
UserFilter::~UserFilter() = default;

bool UserFilter::hasLocalData()
{
    return false;
}

void UserFilter::setLocalData(boost::shared_ptr<Data> data)
{
    _localData = data;
}

boost::shared_ptr<Data> UserFilter::getLocalData()
{
    return _localData;
}

} // namespace ZR::Corvale
