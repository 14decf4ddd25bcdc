#include "corvale/data/datahuman.h"

#include "corvale/data/data.h"
#include "corvale/data/dataobject2d.h"
#include "corvale/data/dataobject3d.h"
#include "corvale/data/datavector3.h"
#include "corvale/data/lockedtable.h"

#include "rk/log.h"

#include <atomic>
#include <limits>
#include <utility>

namespace ZR::Corvale::Type {

namespace {

const std::string LogCategory = rk::log::addCategory("corvale.datahuman");

unsigned long long nextId()
{
    static std::atomic<unsigned long long> uid_generator{1};
    return uid_generator++;
}

void warnOfMissing(const char* operation, unsigned long long id, const char* kind, const std::string& name)
{
    rk::log::LogStream(rk::log::Warning, LogCategory, __FILE__, operation, __LINE__)
        << "Human " << id << " does not have any " << kind << " called \" " << name << "\"";
}

} // namespace

Human::Human() : _id(nextId()) {}

unsigned long long Human::getId() const
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    return _id;
}

void Human::setId(unsigned long long id)
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    _id = id;
}

std::string Human::getName() const
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    return _name;
}

void Human::setName(const std::string& name)
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    _name = name;
}

boost::shared_ptr<Vector3> Human::getPosition() const
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    return _position;
}

void Human::setPosition(boost::shared_ptr<Vector3> position)
{
    const boost::lock_guard<boost::mutex> lock(_mutex);
    _position.swap(position);
}

bool Human::hasScore(const std::string& name) const
{
    return lockedtable::has(_mutex, _scores, name);
}

float Human::getScore(const std::string& name) const
{
    return lockedtable::get(_mutex, _scores, name, std::numeric_limits<float>::quiet_NaN());
}

void Human::setScore(const std::string& name, float score)
{
    lockedtable::set(_mutex, _scores, name, score);
}

void Human::removeScore(const std::string& name)
{
    if (!lockedtable::remove(_mutex, _scores, name))
        warnOfMissing(__func__, getId(), "score", name);
}

bool Human::hasObject2D(const std::string& name) const
{
    return lockedtable::has(_mutex, _objects2D, name);
}

boost::shared_ptr<Object2D> Human::getObject2D(const std::string& name) const
{
    return lockedtable::get(_mutex, _objects2D, name);
}

void Human::setObject2D(const std::string& name, boost::shared_ptr<Object2D> object)
{
    lockedtable::set(_mutex, _objects2D, name, std::move(object));
}

void Human::removeObject2D(const std::string& name)
{
    if (!lockedtable::remove(_mutex, _objects2D, name))
        warnOfMissing(__func__, getId(), "Object2D", name);
}

bool Human::hasObject3D(const std::string& name) const
{
    return lockedtable::has(_mutex, _objects3D, name);
}

boost::shared_ptr<Object3D> Human::getObject3D(const std::string& name) const
{
    return lockedtable::get(_mutex, _objects3D, name);
}

void Human::setObject3D(const std::string& name, boost::shared_ptr<Object3D> object)
{
    lockedtable::set(_mutex, _objects3D, name, std::move(object));
}

void Human::removeObject3D(const std::string& name)
{
    if (!lockedtable::remove(_mutex, _objects3D, name))
        warnOfMissing(__func__, getId(), "Object3D", name);
}

bool Human::hasProperty(int key) const
{
    return lockedtable::has(_mutex, _properties, key);
}

boost::shared_ptr<Data> Human::getPropertyData(int key) const
{
    return lockedtable::get(_mutex, _properties, key);
}

void Human::setPropertyData(int key, boost::shared_ptr<Data> value)
{
    lockedtable::set(_mutex, _properties, key, std::move(value));
}

void Human::removeProperty(int key)
{
    if (!lockedtable::remove(_mutex, _properties, key))
        RK_LOG(rk::log::Warning, LogCategory) << "Human " << getId() << " does not have any property " << key;
}

} // namespace ZR::Corvale::Type
