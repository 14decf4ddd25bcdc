#include "corvale/runtime/nodeprocesssource.h"

#include "corvale/data/data.h"
#include "corvale/runtime/callstack.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"

#include <boost/thread/locks.hpp>

#include <new>
#include <utility>
#include <vector>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.nodeProcessSource");

// Lets go of a process. Those of a row that read one another end one after the other, not one inside another.
void letGo(boost::shared_ptr<Process>& process)
{
    static thread_local std::vector<boost::shared_ptr<Process>>* ending = nullptr;
    if (ending) {
        try {
            ending->push_back(std::move(process));
        } catch (const std::bad_alloc&) { // then it ends with its holder
        }
        return;
    }
    std::vector<boost::shared_ptr<Process>> row;
    ending = &row;
    process.reset();
    while (!row.empty()) {
        const boost::shared_ptr<Process> last = std::move(row.back());
        row.pop_back();
    }
    ending = nullptr;
}

} // namespace

NodeProcessSource::NodeProcessSource(const std::string& name, boost::shared_ptr<Process> process,
                                     const std::string& sinkName)
    : NodeSource(name),
      _process(process),
      _sinkName(sinkName)
{
    addDependency(_process->getName());
}

NodeProcessSource::~NodeProcessSource()
{
    letGo(_process);
}

std::uint64_t NodeProcessSource::getUid() const
{
    return 0;
}

// The upstream computation runs without the source's lock: a callback on the way may well set or read
// this very source. A second downstream process waits at the upstream process's own lock.
void NodeProcessSource::_synchronize(const StringHash& processHash, const StringHash&, long long)
{
    Shard& shard = _shardOf(processHash);
    boost::shared_ptr<Data> value; // ends after the lock, should another process of that name have been first
    boost::unique_lock<ShortLock> lock(shard.lock);
    if (Snapshot* snapshot = shard.snapshots.find(processHash._hash)) {
        ++snapshot->count;
        return;
    }
    lock.unlock();
    // Each process of a row that read one another takes its part of the stack.
    const bool isTooDeep = stackIsShort();
    if (isTooDeep)
        RK_LOG(rk::log::Error, category) << getName() << "->_synchronize(" << *processHash._string
                                         << "): too many processes read one another in a row.";
    value = isTooDeep ? _process->getLastData(_sinkName) : _process->getData(_sinkName);
    lock.lock();
    const auto [snapshot, first] = shard.snapshots.insert(processHash._hash);
    if (first)
        snapshot->data = value;
    ++snapshot->count;
}

} // namespace ZR::Corvale
