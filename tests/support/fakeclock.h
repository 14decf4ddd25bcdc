#pragma once

#include "rk/os.h"

#include <atomic>

namespace support {

/// The time that the libraries read while this lives; it stands still until it is set. Thread-safe.
struct FakeClock
{
    FakeClock()
    {
        rk::os::setClock([this](timeval* time) { return *time = {now / 1000000, now % 1000000}, 0; });
    }
    ~FakeClock() { rk::os::setClock({}); }

    std::atomic<long long> now{1000000000}; ///< microseconds since the epoch
};

} // namespace support
