#include "corvale/runtime/port.h"

#include "corvale/data/data.h"
#include "corvale/runtime/node.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <boost/thread/lock_guard.hpp>

#include <algorithm>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.port");

bool contains(const std::vector<DataType>& types, DataType type)
{
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace

Port::Port(const std::string& name, boost::shared_ptr<Port> parent, Node* node)
    : _name(name),
      _parent(parent),
      _node(node)
{
}

boost::shared_ptr<Port> Port::getRecursiveParent() const
{
    boost::shared_ptr<Port> innermost = _parent;
    while (innermost && innermost->_parent)
        innermost = innermost->_parent;
    return innermost;
}

Node* Port::getNode() const
{
    const Port* port = this;
    while (!port->_node && port->_parent)
        port = port->_parent.get();
    return port->_node;
}

Node* Port::getUpstream() const
{
    return _links.empty() || !_links.front() ? nullptr : _links.front()->getNode();
}

const std::vector<DataType>& Port::getTypes() const
{
    const Port* port = this;
    while (port->_parent)
        port = port->_parent.get();
    return port->_types;
}

Port& Port::addType(DataType type)
{
    _types.push_back(type);
    return *this;
}

bool Port::isCompatible(DataType type) const
{
    const std::vector<DataType>& types = getTypes();
    return types.empty() || contains(types, type);
}

bool Port::isCompatible(boost::shared_ptr<Port> other) const
{
    const std::vector<DataType>& types = getTypes();
    const std::vector<DataType>& others = other->getTypes();
    return types.empty() || others.empty() ||
           std::any_of(types.begin(), types.end(), [&](DataType type) { return contains(others, type); });
}

const boost::shared_ptr<Data>& Port::getDefaultData() const
{
    const Port* port = this;
    while (!port->_defaultData && port->_parent)
        port = port->_parent.get();
    return port->_defaultData;
}

bool Port::isOptional() const
{
    for (const Port* port = this; port; port = port->_parent.get())
        if (port->_optional || port->_defaultData)
            return true;
    return false;
}

boost::shared_ptr<Data> Port::requestData(const StringHash& processHash, const StringHash& scopeHash,
                                          long long depth)
{
    boost::shared_ptr<Data> loaded;
    if (_findLoaded(scopeHash, &loaded))
        return loaded;
    if (_links.empty())
        return _defaultData;
    Node* upstream = _upstream("requestData");
    if (!upstream)
        return boost::shared_ptr<Data>();
    boost::shared_ptr<Data> value =
        upstream->requestData(processHash, scopeHash, depth + 1, lend(_links.front()));
    if (!value)
        value = getDefaultData();
    return value;
}

boost::shared_ptr<Data> Port::takeData(const StringHash& processHash, const StringHash& scopeHash,
                                       long long depth)
{
    boost::shared_ptr<Data> value;
    Node* const upstream = _links.size() == 1 ? getUpstream() : nullptr;
    if (!upstream || _findLoaded(scopeHash, nullptr)) {
        value = requestData(processHash, scopeHash, depth);
        synchronizeRelease(processHash, scopeHash, depth);
        return value;
    }
    value = upstream->takeData(processHash, scopeHash, depth + 1, lend(_links.front()));
    if (!value)
        value = getDefaultData();
    return value;
}

void Port::requestEmpty(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    if (_findLoaded(scopeHash, nullptr) || _links.empty())
        return;
    if (Node* upstream = _upstream("requestEmpty"))
        upstream->requestEmpty(processHash, scopeHash, depth + 1, lend(_links.front()));
}

void Port::synchronizeRelease(const StringHash& processHash, const StringHash& scopeHash, long long depth)
{
    if (_links.size() > 1) {
        RK_LOG(rk::log::Error, category)
            << "synchronizeRelease(): an input port (" << _name
            << ") can not have multiple outputs and only an input port can use synchronizeRelease().";
        return;
    }
    if (Node* upstream = getUpstream())
        upstream->synchronizeRelease(processHash, scopeHash, depth + 1);
}

Node* Port::_upstream(const char* operation) const
{
    if (_links.size() > 1) {
        RK_LOG(rk::log::Error, category)
            << _name << "::" << operation << "(): An input port can not have multiple outputs.";
        return nullptr;
    }
    Node* node = getUpstream();
    if (!node)
        RK_LOG(rk::log::Error, category)
            << _name << "::" << operation << "(): trying to get data from an unbound port.";
    return node;
}

void Port::loadData(std::vector<boost::shared_ptr<Port>>& ports,
                    const std::vector<boost::shared_ptr<Data>>& values, const StringHash&,
                    const StringHash& scopeHash, long long)
{
    for (std::size_t i = 0; i < ports.size(); ++i)
        ports[i]->_loadedPort()._load(values[i], scopeHash);
}

void Port::unloadData(std::vector<boost::shared_ptr<Port>>& ports, const StringHash&,
                      const StringHash& scopeHash, long long)
{
    for (const boost::shared_ptr<Port>& port : ports)
        port->_loadedPort()._unload(scopeHash);
}

void Port::_load(const boost::shared_ptr<Data>& value, const StringHash& scopeHash) const
{
    boost::shared_ptr<Data> loaded = value; // then the former one, which ends after the lock
    const boost::lock_guard<ShortLock> lock(_loadedDataLock);
    _loadedData.insert(scopeHash._hash).first->swap(loaded);
    _loadedCount.store(static_cast<std::uint32_t>(_loadedData.size()), std::memory_order_release);
}

void Port::_unload(const StringHash& scopeHash) const
{
    boost::shared_ptr<Data> dropped; // freed without the lock
    if (_loadedCount.load(std::memory_order_acquire) == 0)
        return;
    const boost::lock_guard<ShortLock> lock(_loadedDataLock);
    dropped = _loadedData.take(scopeHash._hash);
    _loadedCount.store(static_cast<std::uint32_t>(_loadedData.size()), std::memory_order_release);
}

// Behind a node's port begins the node's inner scope: nothing asks there in this one.
const Port& Port::_loadedPort() const
{
    const Port* port = this;
    while (!port->_node && port->_parent)
        port = port->_parent.get();
    return *port;
}

// A scope is loaded and read by one thread, so the count that this thread sees covers its own scope.
bool Port::_findLoaded(const StringHash& scopeHash, boost::shared_ptr<Data>* value) const
{
    const Port& port = _loadedPort();
    if (port._loadedCount.load(std::memory_order_acquire) == 0)
        return false;
    const boost::lock_guard<ShortLock> lock(port._loadedDataLock);
    const boost::shared_ptr<Data>* loaded = port._loadedData.find(scopeHash._hash);
    if (loaded && value)
        *value = *loaded;
    return loaded != nullptr;
}

} // namespace ZR::Corvale
