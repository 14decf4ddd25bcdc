#pragma once

#include "rk/os.h"

#include <cstdint>

namespace ZR::Corvale {

/// The present time in microseconds since the epoch, from the clock of the support library.
inline std::int64_t currentMicroseconds()
{
    timeval now{};
    rk::os::gettimeofday(&now);
    // A host's clock may give anything: unsigned, so that the sum wraps.
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000000u +
                                     static_cast<std::uint64_t>(now.tv_usec));
}

} // namespace ZR::Corvale
