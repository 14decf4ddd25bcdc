#pragma once

#include "corvale/data/lockorder.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

namespace support {

/// Ends the program when none of its threads takes a step for a whole minute, and says what each did last
/// and, where the library checks its locks, who holds what.
class Watchdog
{
public:
    explicit Watchdog(int threads) : _last(threads), _watch([this] { watch(); }) {}
    ~Watchdog()
    {
        {
            const std::lock_guard<std::mutex> lock(_mutex);
            _over = true;
        }
        _end.notify_one();
        _watch.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// One of the threads, counted from 0, begins an operation. Thread-safe.
    void step(int thread, int operation)
    {
        _last.at(thread) = operation;
        ++_steps;
    }

private:
    void watch()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        std::uint64_t seen = ~std::uint64_t(0);
        while (!_end.wait_for(lock, std::chrono::minutes(1), [this] { return _over; })) {
            if (seen == _steps)
                report();
            seen = _steps;
        }
    }

    [[noreturn]] void report() const
    {
        for (std::size_t i = 0; i < _last.size(); ++i)
            std::cerr << "thread " << i << " has stood in operation " << _last[i] << " for a minute\n";
        std::cerr << "locks:\n" << ZR::Corvale::heldLocks() << std::flush;
        std::abort();
    }

    std::vector<std::atomic<int>> _last; // operation, by thread
    std::atomic<std::uint64_t> _steps{0};
    std::mutex _mutex;
    std::condition_variable _end;
    bool _over = false; // guarded by _mutex
    std::thread _watch;
};

} // namespace support
