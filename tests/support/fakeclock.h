#pragma once

#include "rk/os.h"

#include <atomic>

namespace support {

/// The time that the libraries read while this lives; it stands still until it is set. Thread-safe.
struct FakeClock
{
    FakeClock()
    {
        rk::os::setClock([this](timeval* time) { return read(time); });
    }
    ~FakeClock() { rk::os::setClock({}); }

    std::atomic<long long> now{1000000000}; ///< microseconds since the epoch

private:
    int read(timeval* time)
    {
        const long long microseconds = now;
        *time = {microseconds / 1000000, microseconds % 1000000};
        return 0;
    }
};

} // namespace support
