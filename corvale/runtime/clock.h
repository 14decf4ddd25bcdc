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

/// Times may be anything that a host's clock gives: sums and differences wrap.
inline std::int64_t wrappingSum(std::int64_t a, std::int64_t b)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

inline std::int64_t wrappingDifference(std::int64_t a, std::int64_t b)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

} // namespace ZR::Corvale
