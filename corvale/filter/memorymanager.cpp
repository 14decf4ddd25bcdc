#include "corvale/filter/memorymanager.h"

#include "corvale/data/data.h"
#include "corvale/runtime/stringhash.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

MemoryManager::MemoryManager() = default;
MemoryManager::~MemoryManager() = default;

boost::shared_ptr<Data> MemoryManager::getData(const StringHash& process, const StringHash& scope)
{
    const boost::lock_guard lock(_memoryLock);
    return _memory[process._hash][scope._hash];
}

bool MemoryManager::setData(const StringHash& process, const StringHash& scope, boost::shared_ptr<Data> value)
{
    const boost::lock_guard lock(_memoryLock);
    _memory[process._hash][scope._hash].swap(value);
    return true;
}

bool MemoryManager::removeProcess(const StringHash& process)
{
    Scopes dropped; // what it holds is freed without the lock
    const boost::lock_guard lock(_memoryLock);
    const auto found = _memory.find(process._hash);
    if (found != _memory.end()) {
        dropped.swap(found->second);
        _memory.erase(found);
    }
    return true;
}

bool MemoryManager::renameProcess(const StringHash& oldName, const StringHash& newName)
{
    Scopes moved; // what the new name had is freed without the lock
    const boost::lock_guard lock(_memoryLock);
    if (_memory.count(oldName._hash) == 0)
        return false;
    Scopes& target = _memory[newName._hash]; // the one step that may fail
    moved.swap(_memory[oldName._hash]);
    if (oldName._hash != newName._hash)
        _memory.erase(oldName._hash);
    target.swap(moved);
    return true;
}

} // namespace ZR::Corvale
