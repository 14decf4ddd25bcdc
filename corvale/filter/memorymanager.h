#pragma once

#include "corvale/data/orderedmutex.h"

#include <boost/shared_ptr.hpp>
#include <boost/unordered_map.hpp>

#include <cstdint>

namespace ZR::Corvale {

class Data;
class StringHash;

/// What filters keep from one computation to the next: one value per place in the graph, a place
/// being a process and a scope.
///
/// Ownership: owned by the engine; holds the values by shared pointer and never copies them.
/// Threads: thread-safe; each operation is atomic. A filter's read, change and write are not atomic
/// together, which is sound since a scope is only active in one thread at a time.
class MemoryManager
{
public:
    MemoryManager();
    ~MemoryManager();

    /// The stored value, null if there is none. Reading leaves an entry behind.
    boost::shared_ptr<Data> getData(const StringHash& process, const StringHash& scope);
    bool setData(const StringHash& process, const StringHash& scope, boost::shared_ptr<Data> value);
    /// Drops what all places of a process keep. True also if there was nothing.
    bool removeProcess(const StringHash& process);
    /// Moves what a process keeps under its new name, replacing what was there. The scopes inside still
    /// carry the old name, so a renamed process's filters start again from nothing. False if there is
    /// nothing to move.
    bool renameProcess(const StringHash& oldName, const StringHash& newName);

private:
    using Scopes = boost::unordered_map<std::uint64_t, boost::shared_ptr<Data>>;

    OrderedMutex<LockRank::Memory> _memoryLock;
    boost::unordered_map<std::uint64_t, Scopes> _memory; // guarded by _memoryLock
};

} // namespace ZR::Corvale
