#include "corvale/data/lockorder.h"

#ifdef CORVALE_CHECK_LOCK_ORDER

#include "rk/log.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <new>
#include <sstream>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.lockOrder");

constexpr std::array rankNames{"Scheduler::_stateMutex",
                               "Scheduler::_updateMutex",
                               "Corvale::_processesMutex",
                               "Process::_lock",
                               "FilterAdapter::_adapterLock",
                               "Corvale::_sourcesMutex",
                               "Corvale::_aliasesMutex",
                               "Corvale::_filtersMutex",
                               "Corvale::_loadedFilesMutex",
                               "Lambda::_lock",
                               "MemoryManager::_memoryLock",
                               "Scheduler::_workMutex",
                               "Scheduler::_scheduleMutex",
                               "NodeSource::_shards",
                               "a ShortLock"};
static_assert(rankNames.size() == static_cast<std::size_t>(LockRank::Short) + 1);

const char* nameOf(LockRank rank)
{
    return rankNames.at(static_cast<std::size_t>(rank));
}

bool isComputation(LockRank rank)
{
    return rank == LockRank::Process || rank == LockRank::FilterAdapter;
}

struct Held
{
    const LockWatch* lock;
    const void* engine;
    bool taken; // else waited for
};

// What a thread holds, outermost first. Written by that thread alone, under the mutex, which others take to
// read. It is no container, and made of plain memory: a lock that is only watched throws nothing.
struct Holder
{
    static constexpr std::size_t room = 1024; // what comes on top is not watched

    std::mutex mutex;
    std::array<Held, room> locks{};
    std::size_t count = 0;
    const pid_t thread = gettid();
    const void* engine = nullptr; // that it is a worker of
    Holder* next = nullptr;

    // The engine of a lock that says none.
    const void* engineAround() const { return count == 0 ? engine : locks[count - 1].engine; }

    void push(const Held& held)
    {
        const std::lock_guard<std::mutex> guard(mutex);
        if (count < room)
            locks[count++] = held;
    }
};

// Static objects may lock to the very end: nothing here is destroyed.
std::mutex holdersMutex;
Holder* holders = nullptr; // guarded by holdersMutex, as are the links
thread_local Holder* present = nullptr;

// What locks after the end of the thread's objects gets a holder that stays.
struct ThreadEnd
{
    ~ThreadEnd()
    {
        const std::lock_guard<std::mutex> guard(holdersMutex);
        Holder** link = &holders;
        while (*link != present)
            link = &(*link)->next;
        *link = present->next;
        std::free(present);
        present = nullptr;
    }
};

Holder& holder()
{
    if (present)
        return *present;
    void* const memory = std::malloc(sizeof(Holder));
    if (!memory)
        std::abort();
    present = new (memory) Holder;
    const std::lock_guard<std::mutex> guard(holdersMutex);
    present->next = holders;
    holders = present;
    static thread_local const ThreadEnd end;
    return *present;
}

} // namespace

void LockWatch::workFor(const void* engine)
{
    holder().engine = engine;
}

void LockWatch::wanted() const
{
    Holder& self = holder();
    const void* const engine = _engine ? _engine : self.engineAround();
    for (std::size_t i = 0; i < self.count; ++i) {
        const Held& held = self.locks[i];
        if (held.lock == this || (held.engine == engine && !_mayFollow(*held.lock)))
            _breach(*held.lock);
    }
    self.push({this, engine, false});
}

void LockWatch::taken() const
{
    Holder& self = holder();
    const std::lock_guard<std::mutex> guard(self.mutex);
    if (self.count != 0 && self.locks[self.count - 1].lock == this)
        self.locks[self.count - 1].taken = true;
}

void LockWatch::tried() const
{
    Holder& self = holder();
    self.push({this, _engine ? _engine : self.engineAround(), true});
}

void LockWatch::given() const
{
    Holder& self = holder();
    const std::lock_guard<std::mutex> guard(self.mutex);
    Held* const end = self.locks.data() + self.count;
    Held* const rest =
        std::find_if(self.locks.data(), end, [this](const Held& held) { return held.lock == this; });
    if (rest == end)
        return;
    std::copy(rest + 1, end, rest);
    --self.count;
}

bool LockWatch::_mayFollow(const LockWatch& held) const
{
    if (held._rank == _rank)
        return isComputation(_rank);
    if (held._rank == LockRank::Processes && isComputation(_rank)) {
        held._hostComputed = true;
        return !held._callbackLooked;
    }
    if (isComputation(held._rank) && _rank == LockRank::Processes) {
        _callbackLooked = true;
        return !_hostComputed;
    }
    // The table of processes, which is taken next, speaks for it.
    return held._rank < _rank || (isComputation(held._rank) && _rank == LockRank::SchedulerUpdate);
}

void LockWatch::_breach(const LockWatch& held) const
{
    rk::log::setLevel(rk::log::Fatal); // the last words are shown
    RK_LOG(rk::log::Fatal, category) << nameOf(_rank) << " must not be taken under " << nameOf(held._rank)
                                     << ", which this thread, " << gettid() << ", holds.\n"
                                     << heldLocks();
    std::abort();
}

std::string heldLocks()
{
    std::ostringstream lines;
    const std::lock_guard<std::mutex> guard(holdersMutex);
    for (Holder* holder = holders; holder; holder = holder->next) {
        const std::lock_guard<std::mutex> locks(holder->mutex);
        if (holder->count == 0)
            continue;
        std::string name;
        std::getline(std::ifstream("/proc/self/task/" + std::to_string(holder->thread) + "/comm"), name);
        lines << "  thread " << holder->thread << " (" << name << ")";
        for (std::size_t i = 0; i < holder->count; ++i)
            lines << (holder->locks[i].taken ? ", holds " : ", waits for ")
                  << nameOf(holder->locks[i].lock->_rank) << " " << holder->locks[i].lock;
        lines << "\n";
    }
    return lines.str();
}

} // namespace ZR::Corvale

#else

std::string ZR::Corvale::heldLocks()
{
    return std::string();
}

#endif
