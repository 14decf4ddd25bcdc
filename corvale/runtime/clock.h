#pragma once

#include "rk/os.h"

#include <cstdint>

namespace ZR::Corvale {

/// The present time in microseconds since the epoch, from the clock of the support library.
inline std::int64_t currentMicroseconds()
{
    timeval now{};
    rk::os::gettimeofday(&now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000 + now.tv_usec;
}

} // namespace ZR::Corvale
