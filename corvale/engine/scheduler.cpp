#include "corvale/engine/scheduler.h"

#include "corvale/engine/corvale_p.h"
#include "corvale/runtime/clock.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"
#include "rk/os.h"

#include <boost/chrono/duration.hpp>
#include <boost/chrono/system_clocks.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/thread.hpp>

#include <sched.h>
#include <sys/prctl.h>

#include <algorithm>

namespace ZR::Corvale {

namespace {

[[maybe_unused]] const std::string category = rk::log::addCategory("corvale.scheduler");

using Microseconds = boost::chrono::microseconds;

// In microseconds.
constexpr long long longestSleep = 100000;
constexpr long long shortestSleep = 30; // less is sooner waited for awake
constexpr long long longSleep = 2000;   // after which what a worker needs has left the caches
constexpr long long longestLateness = 200;

} // namespace

Scheduler::Scheduler(CorvalePrivate* engine, unsigned int threads)
    : _engine(engine),
      _threadCount(threads),
      _stateMutex(engine),
      _updateMutex(engine),
      _workMutex(engine),
      _scheduleMutex(engine)
{
}

Scheduler::~Scheduler()
{
    stop();
}

bool Scheduler::start()
{
    const boost::lock_guard guard(_stateMutex);
    if (_running)
        return true;
    _running = true;
    _threads.reserve(_threadCount); // no thread is lost once it runs
    while (_threads.size() < _threadCount)
        _threads.push_back(std::make_unique<boost::thread>([this] { run(); }));
    return true;
}

bool Scheduler::stop()
{
    const boost::lock_guard guard(_stateMutex);
    if (!_running)
        return true;
    _running = false;
    _wake(true);
    for (const std::unique_ptr<boost::thread>& thread : _threads)
        thread->join();
    _threads.clear();
    return true;
}

// Updates go one after the other, so that the last to look at the processes is the last to write.
bool Scheduler::update()
{
    ByName processes; // what it holds in the end goes after the locks, as does the former schedule
    std::vector<boost::shared_ptr<Process>> schedule;
    const boost::lock_guard update(_updateMutex);
    processes = _engine->getSchedulableProcesses();
    {
        const boost::lock_guard work(_workMutex);
        const boost::lock_guard guard(_scheduleMutex);
        _scheduled.swap(processes);
        _schedule.swap(schedule);
        _scheduleStale = true;
        _scheduleChanged = true;
    }
    _wake(true);
    return true;
}

bool Scheduler::updateAdded()
{
    ByName added; // in the end what was replaced, which goes after the locks, as does the former schedule
    std::vector<boost::shared_ptr<Process>> schedule;
    boost::unique_lock updating(_updateMutex);
    if (!_engine->takeAddedProcesses(added)) {
        updating.unlock();
        return update();
    }
    if (added.empty())
        return true;
    {
        const boost::lock_guard work(_workMutex);
        const boost::lock_guard guard(_scheduleMutex);
        const std::int64_t now = currentMicroseconds();
        for (auto& [name, process] : added) {
            if (_running && _threadCount != 0) // else nobody would ever take it from there
                _dueQueue.add(process, now);
            _scheduled[name].swap(process);
        }
        _schedule.swap(schedule);
        _scheduleStale = true;
    }
    _wake(true);
    return true;
}

// Caller holds _scheduleMutex.
const std::vector<boost::shared_ptr<Process>>& Scheduler::_presentSchedule() const
{
    if (_scheduleStale) {
        std::vector<boost::shared_ptr<Process>> processes;
        processes.reserve(_scheduled.size());
        for (const auto& entry : _scheduled)
            processes.push_back(entry.second);
        _schedule = pass(processes);
        _scheduleStale = false;
    }
    return _schedule;
}

void Scheduler::lookAtAll()
{
    _scheduleChanged = true;
}

// One pass over processes that come in name order.
std::vector<boost::shared_ptr<Process>>
Scheduler::pass(const std::vector<boost::shared_ptr<Process>>& processes)
{
    std::vector<Share> shares;
    for (const boost::shared_ptr<Process>& process : processes) {
        // The priority may fall to 0 at any moment; then the share is the least.
        const unsigned int priority = std::max(process->getPriority(), 1u);
        shares.emplace_back(process, 1u << (priority - 1));
    }
    std::sort(shares.begin(), shares.end(), processSort);
    const unsigned int least = shares.empty() ? 1 : shares.front().second;
    for (Share& share : shares)
        share.second /= least;

    std::vector<boost::shared_ptr<Process>> slots;
    buildSchedulingList(&slots, &shares);
    return slots;
}

std::vector<boost::shared_ptr<Process>> Scheduler::getScheduledProcessList() const
{
    const boost::lock_guard guard(_scheduleMutex);
    return _presentSchedule();
}

// Without workers nobody would ever take the process, and the list would only grow; while they are
// stopped, a process waits once.
bool Scheduler::addProcessToScheduledProcessList(boost::shared_ptr<Process> process)
{
    if (_threadCount == 0)
        return true;
    {
        const boost::lock_guard guard(_workMutex);
        if (!_running)
            _workList.erase(std::remove(_workList.begin(), _workList.end(), process), _workList.end());
        _workList.push_back(process);
    }
    _wake(false);
    return true;
}

void Scheduler::buildSchedulingList(std::vector<boost::shared_ptr<Process>>* out, std::vector<Share>* in)
{
    if (in->empty())
        return;
    if (in->back().second == 1) {
        for (const Share& share : *in)
            out->push_back(share.first);
        return;
    }
    std::vector<Share> high;
    std::vector<Share> low;
    for (const Share& share : *in) {
        if (share.second == 1)
            low.push_back(share);
        else
            high.emplace_back(share.first, share.second >> 1);
    }
    buildSchedulingList(out, &high);
    buildSchedulingList(out, &low);
    buildSchedulingList(out, &high);
}

// The body of a worker. An exception of a filter or callback ends the program here, by design: a worker
// has nobody to hand it to.
void Scheduler::run()
{
    LockWatch::workFor(_engine);
    // Sleeps end within microseconds of their time, not within the usual slack of 50 of them.
    prctl(PR_SET_TIMERSLACK, 1UL);
    while (_running) {
        sched_yield();
        const std::uint64_t wakesSeen = _wakes;
        if (const boost::shared_ptr<Process> process = getNextProcess())
            _visit(process, wakesSeen);
    }
    Dropped dropped;
    const boost::lock_guard guard(_workMutex);
    dropped.slots.swap(_workList);
    std::swap(dropped.queue, _dueQueue);
    _scheduleChanged = true;
}

void Scheduler::_visit(const boost::shared_ptr<Process>& process, std::uint64_t wakesSeen)
{
    const StringHash name = process->getNameHash();
    if (!_engine->isProcess(*name._string)) { // deleted since it entered the list
        _release(process);
        update();
        return;
    }
    if (process->getPriority() != 0) {
        rk::os::setCurrentThreadName("CorWrk_" + *name._string);
        _awaitDue(*process, wakesSeen);
        process->update();
    }
    _release(process);
}

// The sleep stands at the end of a pass: until the next process is due, or something wakes the worker.
boost::shared_ptr<Process> Scheduler::getNextProcess()
{
    const std::uint64_t wakesSeen = _wakes;
    bool lookedAtAll = false;
    long long microseconds = 0;
    Dropped dropped;
    {
        const boost::lock_guard guard(_workMutex);
        const std::int64_t now = currentMicroseconds();
        if (_workList.empty())
            lookedAtAll = _beginPass(now, dropped);
        if (const boost::shared_ptr<Process> process = _takeFromWorkList(dropped))
            return process;
        microseconds = _dueQueue.untilNext(now, longestSleep);
        if (const boost::shared_ptr<Process> process = _takeEarly(microseconds))
            return process;
    }
    dropped = Dropped();
    if (lookedAtAll)
        microseconds = _engine->_getNextComputationTime();
    rk::os::setCurrentThreadName("CorWrk_idle");
    _sleep(microseconds, wakesSeen);
    return boost::shared_ptr<Process>();
}

// A pass goes over the whole schedule when it has changed or a process was reset, and every tenth of a
// second, since a host's clock can make anything due; in between over what the queue knows to be due. True
// for the former. Caller holds _workMutex.
bool Scheduler::_beginPass(std::int64_t now, Dropped& dropped)
{
    const std::int64_t since = wrappingDifference(now, _lastLookAtAll);
    if (!_scheduleChanged && since >= 0 && since < longestSleep) {
        _workList = pass(_dueQueue.takeDue(now));
        return false;
    }
    const boost::lock_guard guard(_scheduleMutex);
    _scheduleChanged = false; // first: a reset from now on is for the next pass
    _workList = _presentSchedule();
    std::swap(dropped.queue, _dueQueue);
    _dueQueue.assign(_schedule, now);
    _lastLookAtAll = now;
    return true;
}

// Takes the last entry that no worker holds and whose `update` would do something; what is passed over is
// gone for this pass. Caller holds _workMutex.
boost::shared_ptr<Process> Scheduler::_takeFromWorkList(Dropped& dropped)
{
    while (!_workList.empty()) {
        boost::shared_ptr<Process> process = std::move(_workList.back());
        _workList.pop_back();
        if (process->isActive() && !process->isValid() && _activeProcesses.insert(process).second)
            return process;
        dropped.slots.push_back(std::move(process));
    }
    return boost::shared_ptr<Process>();
}

// The way to a process takes some microseconds, and several times that when a long sleep has emptied the
// caches: the worker goes it before the time and waits there. Caller holds _workMutex.
boost::shared_ptr<Process> Scheduler::_takeEarly(long long microseconds)
{
    if (microseconds <= 0 || microseconds > shortestSleep)
        return boost::shared_ptr<Process>();
    const boost::shared_ptr<Process> process = _dueQueue.first();
    const bool isFree = process->isActive() && _activeProcesses.insert(process).second;
    return isFree ? process : boost::shared_ptr<Process>();
}

void Scheduler::_release(const boost::shared_ptr<Process>& process)
{
    const boost::lock_guard guard(_workMutex);
    _activeProcesses.erase(process);
    _dueQueue.refresh(process, currentMicroseconds());
}

// Ends early when there is a reason to stay awake that the caller has not seen yet. The kernel wakes a
// thread some dozens of microseconds too late, which a process of a high rate would lose in each period: a
// longer sleep ends earlier by that, at most a sixteenth, and the rest is waited for awake. A long one ends
// so early that the next process is taken before its time.
void Scheduler::_sleep(long long microseconds, std::uint64_t wakesSeen)
{
    using Clock = boost::chrono::steady_clock;
    const auto isOver = [&] { return _wakes != wakesSeen || !_running; };
    const bool isForProcess = microseconds < longestSleep; // else for the next look at all
    const long long early = isForProcess && microseconds >= longSleep ? shortestSleep : 0;
    const Clock::time_point end = Clock::now() + Microseconds(microseconds - early);
    if (microseconds >= shortestSleep) {
        const long long ahead = microseconds >= 500 ? std::min<long long>(_lateness, microseconds / 16) : 0;
        const Clock::time_point wake = end - Microseconds(ahead);
        boost::unique_lock<boost::mutex> lock(_sleepMutex);
        if (!_sleepers.wait_until(lock, wake, isOver))
            _noteLateness(boost::chrono::duration_cast<Microseconds>(Clock::now() - wake).count());
    }
    while (!isOver() && Clock::now() < end)
        sched_yield();
}

// Waits awake for a process that was taken early, unless there is something else to do. A clock that a host
// has set may stand still meanwhile, so that only a change ends it.
void Scheduler::_awaitDue(const Process& process, std::uint64_t wakesSeen)
{
    const auto left = [&] { return wrappingDifference(process.getDueTime(), currentMicroseconds()); };
    while (_wakes == wakesSeen && !_scheduleChanged && _running && left() > 0 && left() <= shortestSleep)
        sched_yield();
}

// Rises by nine times what it falls by: it stands where one sleep of ten is later.
void Scheduler::_noteLateness(long long microseconds)
{
    const long long present = _lateness;
    _lateness = std::clamp<long long>(present + (microseconds > present ? 9 : -1), 0, longestLateness);
}

void Scheduler::_wake(bool everyWorker)
{
    {
        const boost::lock_guard<boost::mutex> guard(_sleepMutex);
        ++_wakes;
    }
    if (everyWorker)
        _sleepers.notify_all();
    else
        _sleepers.notify_one();
}

} // namespace ZR::Corvale
