#include "corvale/data/dataobject.h"

#include "corvale/data/data.h"
#include "corvale/data/dataregion2.h"
#include "corvale/data/dataregion3.h"
#include "corvale/data/lockedtable.h"

#include "rk/log.h"

#include <locale>
#include <sstream>
#include <utility>

namespace ZR::Corvale::Type {

namespace {
const std::string LogCategory = rk::log::addCategory("corvale.dataobject");
}

template <typename R>
Object<R>::Object(boost::shared_ptr<R> region) : region(std::move(region))
{
}

template <typename R>
bool Object<R>::hasProperty(int key) const
{
    return lockedtable::has(mutex, properties, key);
}

template <typename R>
boost::shared_ptr<Data> Object<R>::getPropertyData(int key) const
{
    return lockedtable::get(mutex, properties, key);
}

template <typename R>
void Object<R>::setPropertyData(int key, boost::shared_ptr<Data> value)
{
    lockedtable::set(mutex, properties, key, std::move(value));
}

template <typename R>
void Object<R>::removeProperty(int key)
{
    if (!lockedtable::remove(mutex, properties, key))
        RK_LOG(rk::log::Warning, LogCategory) << "The object does not have any property " << key;
}

template <typename R>
std::string Object<R>::propertiesText() const
{
    const boost::lock_guard<boost::mutex> lock(mutex);
    std::ostringstream text;
    text.imbue(std::locale::classic());
    for (const auto& [key, value] : properties)
        text << "{ " << key << " = " << (value ? value->toString() : "NULL") << "}";
    return text.str();
}

template class Object<Region2>;
template class Object<Region3>;

} // namespace ZR::Corvale::Type
