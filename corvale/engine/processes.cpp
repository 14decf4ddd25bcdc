// The engine's processes: everything by name but their building.

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/engine/processbuilder.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/aggregatedsink.h"
#include "corvale/runtime/event.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/locks.hpp>

#include <algorithm>
#include <utility>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.private");

const char* const processUnknown = "\": process unknown.";

} // namespace

boost::shared_ptr<Process> CorvalePrivate::_findProcess(const std::string& name) const
{
    return findIn(_processes, name);
}

template <typename Result, typename Use>
Result CorvalePrivate::_withProcess(const std::string& name, const char* operation, const char* prefix,
                                    const char* suffix, Result missing, Use use) const
{
    const boost::lock_guard guard(_processesMutex);
    if (const boost::shared_ptr<Process> process = _findProcess(name))
        return use(*process);
    rk::log::log(rk::log::Error, category, prefix + name + suffix, __FILE__, operation, __LINE__);
    return missing;
}

// What is remembered of bound sources goes after the zombies are known, on which it depends.
void CorvalePrivate::_rebuildSchedule(bool clearZombies)
{
    try {
        _computeDependency(clearZombies);
        _forgetBoundSources();
        _scheduler.update();
    } catch (...) { // the next change to the processes makes up for it
        const boost::lock_guard guard(_processesMutex);
        _connectionsMoved = true;
        throw;
    }
}

void CorvalePrivate::_forgetBoundSources()
{
    const boost::lock_guard guard(_sourcesMutex);
    _sourceBoundCache.clear();
}

std::vector<std::string> CorvalePrivate::getProcesses() const
{
    const boost::lock_guard guard(_processesMutex);
    return keysOf(_processes);
}

bool CorvalePrivate::isProcess(const std::string& name) const
{
    const boost::lock_guard guard(_processesMutex);
    return _processes.count(name) != 0;
}

bool CorvalePrivate::createProcess(const std::string& name, const std::string& filter, const PairList& inputs,
                                   const PairList& outputs, const PairList& events,
                                   const PairList& declarations, unsigned int priority, float frequency)
{
    ProcessBuilder builder(*this, name, filter);
    try {
        if (!builder.build(inputs, outputs, events, declarations, priority, frequency))
            return false;
        _scheduleNew(name);
    } catch (...) {
        _withdraw(name, builder.process());
        throw;
    }
    return true;
}

// Another process's event may hold it: so that it comes to nothing there.
void CorvalePrivate::_withdraw(const std::string& name, const boost::shared_ptr<Process>& process)
{
    if (!process)
        return;
    process->disable();
    const boost::lock_guard guard(_processesMutex);
    const auto found = _processes.find(name);
    if (found != _processes.end() && found->second == process)
        _processes.erase(found);
    _connectionsMoved = true;
}

// A process of the new name is replaced and drops out of the table. The schedule holds processes, not
// names, and stays as it is.
bool CorvalePrivate::renameProcess(const std::string& name, const std::string& newName)
{
    std::map<std::string, boost::shared_ptr<Process>>::node_type replaced; // ends after the lock
    const boost::lock_guard guard(_processesMutex);
    const boost::shared_ptr<Process> process = _findProcess(name);
    if (!process) {
        RK_LOG(rk::log::Error, category) << "Can't rename the process \"" << name << processUnknown;
        return false;
    }
    const StringHash newHash(newName);
    std::string key = newName;
    _memoryManager.renameProcess(StringHash(name), newHash); // the last step that may fail
    process->setName(newHash);
    _connectionsMoved = true;
    auto entry = _processes.extract(name);
    entry.key().swap(key);
    replaced = _processes.extract(newName);
    _processes.insert(std::move(entry));
    return true;
}

bool CorvalePrivate::deleteProcess(const std::string& name)
{
    boost::unique_lock lock(_processesMutex);
    const boost::shared_ptr<Process> process = _findProcess(name);
    if (!process) {
        RK_LOG(rk::log::Error, category) << "Can't delete process \"" << name << processUnknown;
        return false;
    }
    _memoryManager.removeProcess(StringHash(name));
    _processes.erase(name);
    lock.unlock();
    RK_LOG(rk::log::Verbose, category) << "Delete process \"" << name << "\".";
    _rebuildSchedule(true);
    return true;
}

bool CorvalePrivate::_setEnabled(const std::string& name, bool enabled, const char* operation,
                                 const char* prefix)
{
    const bool known = _withProcess(name, operation, prefix, processUnknown, false, [&](Process& process) {
        enabled ? process.enable() : process.disable();
        return true;
    });
    if (known)
        _rebuildSchedule(true);
    return known;
}

bool CorvalePrivate::enableProcess(const std::string& name)
{
    return _setEnabled(name, true, __func__, "Can't enable process \"");
}

bool CorvalePrivate::disableProcess(const std::string& name)
{
    return _setEnabled(name, false, __func__, "Can't disable process \"");
}

bool CorvalePrivate::resetProcess(const std::string& name)
{
    return _withProcess(name, __func__, "Process \"", "\" does not exist.", false, [&](Process& process) {
        _memoryManager.removeProcess(StringHash(name));
        process.reset();
        _scheduler.lookAtAll();
        return true;
    });
}

bool CorvalePrivate::isProcessEnable(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't test if process \"", "\" is enable: process unknown.", false,
                        [](const Process& process) { return process.isEnable(); });
}

bool CorvalePrivate::isProcessZombie(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't test if process \"", "\" is zombie: process unknown.", false,
                        [](const Process& process) { return process.isZombie(); });
}

unsigned int CorvalePrivate::getProcessPriority(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get priority of the process \"", processUnknown, 0u,
                        [](const Process& process) { return process.getPriority(); });
}

bool CorvalePrivate::setProcessPriority(const std::string& name, unsigned int priority)
{
    const unsigned int cut = std::min(priority, Process::maximumPriority);
    const bool known = _withProcess(name, __func__, "Can't set priority for the process \"", processUnknown,
                                    false, [&](Process& process) { return process.setPriority(cut); });
    if (known)
        _scheduler.update();
    return known;
}

float CorvalePrivate::getProcessFrequency(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get frequency of the process \"", processUnknown, 0.0f,
                        [](const Process& process) { return process.getFrequency(); });
}

bool CorvalePrivate::setProcessFrequency(const std::string& name, float frequency)
{
    const bool known = _withProcess(name, __func__, "Can't set frequency for the process \"", processUnknown,
                                    false, [&](Process& process) { return process.setFrequency(frequency); });
    if (known)
        _scheduler.update();
    return known;
}

std::string CorvalePrivate::getProcessDescription(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get description of the process \"", "\": process unknown",
                        std::string(), [](const Process& process) { return process.getDescription(); });
}

bool CorvalePrivate::setProcessDescription(const std::string& name, const std::string& description)
{
    return _withProcess(name, __func__, "Can't set description for the process \"", processUnknown, false,
                        [&](Process& process) { return process.setDescription(description); });
}

std::vector<std::string> CorvalePrivate::getProcessSources(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get sources of the process \"", processUnknown,
                        std::vector<std::string>(),
                        [](const Process& process) { return keysOf(process.getSources()); });
}

std::vector<std::string> CorvalePrivate::getProcessSinks(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get sinks of the process \"", processUnknown,
                        std::vector<std::string>(),
                        [](const Process& process) { return keysOf(process.getSinks()); });
}

std::vector<std::string> CorvalePrivate::getProcessAggregatedSinks(const std::string& name) const
{
    return _withProcess(name, __func__, "Can't get aggregated sinks of the process \"", processUnknown,
                        std::vector<std::string>(),
                        [](const Process& process) { return keysOf(process.getAggregatedSinks()); });
}

template <typename Read>
boost::shared_ptr<Data> CorvalePrivate::_readSink(const std::string& sink, const char* operation,
                                                  Read read) const
{
    const auto fail = [&](const std::string& text) {
        rk::log::log(rk::log::Error, category, std::string(operation) + "(\"" + sink + "\"): " + text,
                     __FILE__, operation, __LINE__);
        return boost::shared_ptr<Data>();
    };
    if (!hasColon(sink))
        return fail("the sink is not correctly formated (\"process:sink\" expected).");
    const auto [processName, sinkName] = splitString(":", sink);
    const boost::lock_guard guard(_processesMutex);
    if (const boost::shared_ptr<Process> process = _findProcess(processName))
        return read(*process, sinkName);
    return fail("the process \"" + processName + "\" does not exist.");
}

// The table's lock stands for the whole computation: no process can go away under it.
boost::shared_ptr<Data> CorvalePrivate::getData(const std::string& sink)
{
    return _readSink(sink, __func__,
                     [](Process& process, const std::string& name) { return process.getData(name); });
}

boost::shared_ptr<Data> CorvalePrivate::getLastData(const std::string& sink) const
{
    return _readSink(sink, __func__,
                     [](Process& process, const std::string& name) { return process.getLastData(name); });
}

bool CorvalePrivate::createEvent(const std::string& sink,
                                 boost::function<void(boost::shared_ptr<Data>)> callback)
{
    const std::string prefix = "createEvent(\"" + sink + "\", callback): ";
    if (!hasColon(sink)) {
        RK_LOG(rk::log::Error, category) << prefix << "invalid sink format expected \"process:sink\".";
        return false;
    }
    const auto [processName, sinkName] = splitString(":", sink);
    const boost::lock_guard guard(_processesMutex);
    const boost::shared_ptr<Process> process = _findProcess(processName);
    if (!process) {
        RK_LOG(rk::log::Error, category) << prefix << "unknown process \"" << processName << "\".";
        return false;
    }
    const boost::shared_ptr<Event> event = boost::make_shared<Event>(callback);
    if (const boost::shared_ptr<NodeSink> node = findIn(process->getSinks(), sinkName)) {
        node->addEvent(event);
        return true;
    }
    if (const boost::shared_ptr<AggregatedSink> node = findIn(process->getAggregatedSinks(), sinkName)) {
        node->addEvent(event);
        return true;
    }
    RK_LOG(rk::log::Error, category) << prefix << "unknown sink \"" << sinkName << "\".";
    return false;
}

} // namespace ZR::Corvale
