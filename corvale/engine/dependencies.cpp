// What follows from the connections of processes: zombies, bound sources, frequencies, the next due time.

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/runtime/clock.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/nodesourcealias.h"
#include "corvale/runtime/process.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/locks.hpp>

#include <algorithm>

namespace ZR::Corvale {

namespace {

bool isSchedulable(const Process& process)
{
    return process.getPriority() != 0 && process.isActive();
}

} // namespace

template <typename IsActive>
std::set<Process*> CorvalePrivate::_inactiveUpstream(std::vector<Process*> readers, IsActive isActive) const
{
    std::set<Process*> found;
    for (std::size_t i = 0; i < readers.size(); ++i)
        for (const auto& source : readers[i]->getSources())
            for (const std::string& name : source.second->getDependencies()) {
                const boost::shared_ptr<Process> upstream = _findProcess(name);
                if (upstream && !isActive(*upstream) && found.insert(upstream.get()).second)
                    readers.push_back(upstream.get());
            }
    return found;
}

// Walks from the active processes to what they read. The flags are set once the answer stands, so that a
// process that stays a zombie is one throughout: workers read the flags meanwhile.
void CorvalePrivate::_computeDependency(bool clear)
{
    const boost::lock_guard guard(_processesMutex);
    const auto isActive = [clear](const Process& process) {
        return clear ? process.isEnable() : process.isActive();
    };
    std::vector<Process*> active;
    for (const auto& entry : _processes)
        if (isActive(*entry.second))
            active.push_back(entry.second.get());

    const std::set<Process*> zombies = _inactiveUpstream(active, isActive);
    for (const auto& entry : _processes)
        if (zombies.count(entry.second.get()) != 0)
            entry.second->zombify();
        else if (clear)
            entry.second->unZombify();
    _connectionsMoved = false;
}

// A new process can only add readers: what was connected before stands, unless names have moved since or a
// look has failed.
void CorvalePrivate::_scheduleNew(const std::string& name)
{
    boost::unique_lock lock(_processesMutex);
    if (_connectionsMoved) {
        lock.unlock();
        _rebuildSchedule(false);
        return;
    }
    const boost::shared_ptr<Process> process = _findProcess(name);
    if (process && process->isActive()) {
        _addedProcesses.insert(name);
        const auto isActive = [](const Process& upstream) { return upstream.isActive(); };
        for (Process* zombie : _inactiveUpstream({process.get()}, isActive)) {
            zombie->zombify();
            _addedProcesses.insert(zombie->getName());
        }
    }
    lock.unlock();
    _forgetBoundSources();
    _scheduler.updateAdded();
}

bool CorvalePrivate::_isRead(const std::string& source) const
{
    return std::any_of(_processes.begin(), _processes.end(), [&](const auto& entry) {
        return entry.second->isActive() && entry.second->getSources().count(source) != 0;
    });
}

// By name alone, known or not, and remembered: the question stands before each expensive acquisition of
// a value. An entry that another thread put there first stays.
bool CorvalePrivate::isSourceBound(const std::string& name) const
{
    {
        const boost::lock_guard sources(_sourcesMutex);
        const auto known = _sourceBoundCache.find(name);
        if (known != _sourceBoundCache.end())
            return known->second;
    }
    const boost::lock_guard processes(_processesMutex);
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    const std::set<std::string> names = findIn(_aliasesOfSource, name);
    const bool bound = _isRead(name) || std::any_of(names.begin(), names.end(),
                                                    [&](const std::string& alias) { return _isRead(alias); });
    _sourceBoundCache.emplace(name, bound);
    return bound;
}

float CorvalePrivate::_frequencyOf(const std::string& source) const
{
    float best = 0.0f;
    for (const auto& entry : _processes)
        if (entry.second->isActive() && entry.second->getSources().count(source) != 0)
            best = std::max(best, entry.second->getFrequency());
    return best;
}

float CorvalePrivate::getSourceFrequency(const std::string& name) const
{
    const boost::lock_guard processes(_processesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    float best = _frequencyOf(name);
    for (const std::string& alias : findIn(_aliasesOfSource, name))
        best = std::max(best, _frequencyOf(alias));
    return best;
}

Scheduler::ByName CorvalePrivate::getSchedulableProcesses()
{
    Scheduler::ByName processes;
    const boost::lock_guard guard(_processesMutex);
    for (const auto& entry : _processes)
        if (isSchedulable(*entry.second))
            processes.emplace_hint(processes.end(), entry);
    _addedProcesses.clear();
    return processes;
}

bool CorvalePrivate::takeAddedProcesses(Scheduler::ByName& added)
{
    const boost::lock_guard guard(_processesMutex);
    if (_connectionsMoved)
        return false;
    for (const std::string& name : _addedProcesses) {
        const auto known = _processes.find(name);
        if (known != _processes.end() && isSchedulable(*known->second))
            added.insert(*known);
    }
    _addedProcesses.clear();
    return true;
}

// A process of frequency 0 never limits the sleep.
long long CorvalePrivate::_getNextComputationTime() const
{
    const long long now = currentMicroseconds();
    long long least = 100000;
    const boost::lock_guard guard(_processesMutex);
    for (const auto& entry : _processes) {
        const Process& process = *entry.second;
        if (isSchedulable(process) && process.getFrequency() != 0.0f)
            least = std::min(least, std::max(0LL, process.getTimeToLive(now)));
    }
    return least;
}

float CorvalePrivate::_getComputationMaxFrequency() const
{
    float greatest = 0.0f;
    const boost::lock_guard guard(_processesMutex);
    for (const auto& entry : _processes)
        if (isSchedulable(*entry.second))
            greatest = std::max(greatest, entry.second->getFrequency());
    return greatest;
}

} // namespace ZR::Corvale
