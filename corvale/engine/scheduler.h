#pragma once

#include "corvale/data/orderedmutex.h"
#include "corvale/engine/duequeue.h"

#include <boost/shared_ptr.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace boost {
class thread;
}

namespace ZR::Corvale {

class CorvalePrivate;
class Process;

/// Decides which process a free worker looks at next; whether it computes is decided by the process.
///
/// The schedule is one flat list in which each active process stands as often as its share: a priority
/// p gives 1 << (p - 1), divided by the smallest share that occurs. Workers take from the back of a copy
/// of what is due of it; whoever finds nothing left begins the next pass, or sleeps until a process is due:
///
///     update() ------> schedule  a c a b a c a
///                                    | what is due, at the beginning of each pass
///     event ---push--> work list a c a   a c a <--take-- workers
///
/// Priority is so a rate of attention, and frequency a limit on computation.
/// Ownership: a value member of the engine, which outlives it. Threads: thread-safe. `stop` must not be
/// called on a worker. Locks, outermost first: `_stateMutex`; `_updateMutex`, the engine's for its
/// processes; `_workMutex`, `_scheduleMutex`.
/// Failure: `boost::thread_resource_error` from `start` if no thread can be made; those that were made run.
class Scheduler
{
public:
    using Share = std::pair<boost::shared_ptr<Process>, unsigned int>;

    Scheduler(CorvalePrivate* engine, unsigned int threads);
    ~Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    /// Starts the workers; no worker if the count is 0. True.
    bool start();
    /// Wakes the workers, waits for the computations in hand and ends the threads. True.
    bool stop();
    /// Rebuilds the schedule from the engine's processes; the pass under way goes on as it is. True.
    bool update();
    /// Takes in the processes that the engine has since begun to schedule. Costs by their number, where
    /// `update` costs by the number of all. True.
    bool updateAdded();
    /// The next pass asks every process whether it is due, for one was reset.
    void lookAtAll();
    std::vector<boost::shared_ptr<Process>> getScheduledProcessList() const;
    /// Makes a process the next one to be taken. True.
    bool addProcessToScheduledProcessList(boost::shared_ptr<Process> process);

    using ByName = std::map<std::string, boost::shared_ptr<Process>>;

    /// Appends each process of `in`, sorted ascending by shares that are powers of two, the least being
    /// 1, to `out` as often as its share, the high shares spread evenly around the low ones.
    static void buildSchedulingList(std::vector<boost::shared_ptr<Process>>* out, std::vector<Share>* in);
    static std::vector<boost::shared_ptr<Process>>
    pass(const std::vector<boost::shared_ptr<Process>>& processes);
    static bool processSort(Share a, Share b) { return a.second < b.second; }

private:
    // What leaves the lists under their lock, to end after it: a process may hold what is a host's.
    struct Dropped
    {
        std::vector<boost::shared_ptr<Process>> slots;
        DueQueue queue;
    };

    void run();
    void _visit(const boost::shared_ptr<Process>& process, std::uint64_t wakesSeen);
    const std::vector<boost::shared_ptr<Process>>& _presentSchedule() const;
    boost::shared_ptr<Process> getNextProcess();
    bool _beginPass(std::int64_t now, Dropped& dropped);
    boost::shared_ptr<Process> _takeFromWorkList(Dropped& dropped);
    boost::shared_ptr<Process> _takeEarly(long long microseconds);
    void _release(const boost::shared_ptr<Process>& process);
    void _sleep(long long microseconds, std::uint64_t wakesSeen);
    void _awaitDue(const Process& process, std::uint64_t wakesSeen);
    void _noteLateness(long long microseconds);
    void _wake(bool everyWorker);

    CorvalePrivate* const _engine; // owner
    const unsigned int _threadCount;

    OrderedMutex<LockRank::SchedulerState> _stateMutex;   // serialises start and stop
    std::vector<std::unique_ptr<boost::thread>> _threads; // guarded by _stateMutex
    std::atomic<bool> _running{false};

    OrderedMutex<LockRank::SchedulerUpdate> _updateMutex; // serialises update

    OrderedMutex<LockRank::Work> _workMutex;
    std::vector<boost::shared_ptr<Process>> _workList;     // guarded by _workMutex
    std::set<boost::shared_ptr<Process>> _activeProcesses; // in a worker's hands; guarded by _workMutex
    DueQueue _dueQueue;                                    // of the schedule; guarded by _workMutex
    std::atomic<bool> _scheduleChanged{false};             // since the last look at all
    std::int64_t _lastLookAtAll = 0; // microseconds since the epoch; guarded by _workMutex

    mutable OrderedMutex<LockRank::Schedule> _scheduleMutex;
    ByName _scheduled; // what the schedule is made of; guarded by _scheduleMutex
    // Made when it is asked for; guarded by _scheduleMutex.
    mutable std::vector<boost::shared_ptr<Process>> _schedule;
    mutable bool _scheduleStale = false;

    boost::mutex _sleepMutex; // innermost
    boost::condition_variable _sleepers;
    std::atomic<std::uint64_t> _wakes{0}; // reasons to stay awake so far; counted under _sleepMutex
    std::atomic<long long> _lateness{0};  // microseconds by which nine of ten sleeps end too late
};

} // namespace ZR::Corvale
