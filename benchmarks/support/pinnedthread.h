#pragma once

#include <sched.h>

/// Keeps the calling thread on one processor while it lives, so that a run is not disturbed by moves: the last
/// processor that the thread may use, which has the least to do with devices, or the one `before` it.
class PinnedThread
{
public:
    explicit PinnedThread(int before = 0)
    {
        CPU_ZERO(&_allowed);
        sched_getaffinity(0, sizeof _allowed, &_allowed);
        int cpu = CPU_SETSIZE;
        for (int steps = before; cpu >= 0 && steps >= 0; --steps)
            for (--cpu; cpu >= 0 && !CPU_ISSET(cpu, &_allowed);)
                --cpu;
        if (cpu < 0)
            return;
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(cpu, &one);
        sched_setaffinity(0, sizeof one, &one);
    }
    ~PinnedThread() { sched_setaffinity(0, sizeof _allowed, &_allowed); }
    PinnedThread(const PinnedThread&) = delete;
    PinnedThread& operator=(const PinnedThread&) = delete;

private:
    cpu_set_t _allowed;
};
