#pragma once

#include <atomic>
#include <string>

namespace ZR::Corvale {

/// All locks of the library in their order: who holds one takes only such as stand further down.
///
/// A thread holds at most one lock of a rank, but for the two ranks that nest. No lock is recursive. All
/// are held briefly, but for those marked with a star. What a host hands in runs and ends under stars alone.
enum class LockRank
{
    // Life.
    SchedulerState,  // * start and stop; held across the joins of the workers
    SchedulerUpdate, // one rebuilding of the schedule at a time
    Processes,       // * the table of processes; held by `getData` and `resetProcess` for a computation

    // Computation.
    Process,       // * one computation or reset; an upstream process's nests under a downstream one's
    FilterAdapter, // * a call of a user filter with local data; another one's nests when it applies a lambda

    // What a callback may ask for in the middle of a computation.
    Sources,     // the sources, and which of them are known to be read
    Aliases,     // the aliases and their targets
    Filters,     // the filters
    LoadedFiles, // the paths that were loaded
    Lambda,      // who is inside a lambda, and its bindings
    Memory,      // what filters keep
    Work,        // the work list, who computes, what is due; processes are looked at, never waited for
    Schedule,    // the schedule
    Snapshots,   // what a source keeps for some of the processes that read it; a `ShortLock` as well
    Short        // every `ShortLock`: one table of a node or port, one value, one name
};
// Further in stand those under which nothing of the engine is taken: Scheduler::_sleepMutex, the tables of
// Human and Object, the pool of pixels, and those of rk.
//
// Two engines are in no order to one another: a filter of one may ask the other for anything.
//
// A callback that looks at the processes takes SchedulerUpdate and Processes under Process. That is in order
// as long as no host computes under Processes, and out of it in an engine where both happen, at any time.

#ifdef CORVALE_CHECK_LOCK_ORDER

/// Tells of a lock to the check of the order, which ends the program on a breach after a fatal log line that
/// names both locks. The base of every lock of a rank; empty where nothing is checked.
class LockWatch
{
public:
    /// The engine that the lock belongs to; null for that of the lock that is held around it, or that of the
    /// worker who takes it.
    explicit LockWatch(LockRank rank, const void* engine = nullptr) : _rank(rank), _engine(engine) {}
    LockWatch(const LockWatch&) = delete;
    LockWatch& operator=(const LockWatch&) = delete;

    /// Makes this thread a worker of an engine.
    static void workFor(const void* engine);

protected:
    void wanted() const; // checks
    void taken() const;
    void tried() const; // and taken: who does not wait is in any order
    void given() const;

private:
    friend std::string heldLocks();
    bool _mayFollow(const LockWatch& held) const;
    [[noreturn]] void _breach(const LockWatch& held) const;

    const LockRank _rank;
    const void* const _engine;
    // Of the table of processes: what happened in its engine so far.
    mutable std::atomic<bool> _hostComputed{false};
    mutable std::atomic<bool> _callbackLooked{false};
};

#else

class LockWatch
{
public:
    explicit LockWatch(LockRank, const void* = nullptr) {}
    LockWatch(const LockWatch&) = delete;
    LockWatch& operator=(const LockWatch&) = delete;
    static void workFor(const void*) {}

protected:
    void wanted() const {}
    void taken() const {}
    void tried() const {}
    void given() const {}
};

#endif

/// A line for each thread that holds or waits for a lock, outermost first. Empty where nothing is checked.
std::string heldLocks();

} // namespace ZR::Corvale
