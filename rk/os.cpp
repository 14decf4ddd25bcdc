#include "rk/os.h"

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace rk::os {

namespace {

struct ClockHolder
{
    std::shared_mutex mutex;
    Clock clock; // guarded by mutex
};

// Tested first, so that the system's time costs no lock.
std::atomic<bool> clockIsSet{false};

ClockHolder& holder()
{
    static ClockHolder& instance = *new ClockHolder; // the time may be asked for until the very end
    return instance;
}

} // namespace

int gettimeofday(timeval* now)
{
    if (clockIsSet.load(std::memory_order_acquire)) {
        ClockHolder& present = holder();
        const std::shared_lock<std::shared_mutex> lock(present.mutex);
        if (present.clock)
            return present.clock(now);
    }
    return ::gettimeofday(now, nullptr);
}

void msleep(unsigned milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void setClock(Clock clock)
{
    ClockHolder& present = holder();
    const std::unique_lock<std::shared_mutex> lock(present.mutex);
    present.clock.swap(clock); // the former one ends after the lock
    clockIsSet.store(static_cast<bool>(present.clock), std::memory_order_release);
}

void setCurrentThreadName(const std::string& name)
{
    constexpr std::size_t longest = 15; // a longer one would be refused, not cut
    pthread_setname_np(pthread_self(), name.substr(0, longest).c_str());
}

std::FILE* fopen(const std::string& path, const char* mode)
{
    return std::fopen(path.c_str(), mode);
}

} // namespace rk::os
