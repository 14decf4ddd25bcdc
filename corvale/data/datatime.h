#pragma once

#include "corvale/data/dataduration.h"

namespace ZR::Corvale::Type {

/// A point in time: a signed count of microseconds since the epoch. Zero also means: not set.
///
/// Sums wrap at the ends of 64 bits, as does what a host's clock may give.
/// Threads: a plain value; one thread at a time, or several that read.
class Time
{
public:
    Time() : _microseconds(0) {}
    Time(long long microseconds) : _microseconds(microseconds) {}

    /// The present time of `rk::os::gettimeofday`: the system's, or that of the clock which a host set.
    static Time now();

    // Whole units, cut toward zero.
    long long getTotalMicroseconds() const { return _microseconds; }
    long long getTotalMilliseconds() const { return _microseconds / 1'000; }
    long long getTotalSeconds() const { return _microseconds / 1'000'000; }

    Duration operator-(const Time& other) const
    {
        return wrappingDifference(_microseconds, other._microseconds);
    }
    Time operator+(const Duration& span) const
    {
        return wrappingSum(_microseconds, span.getTotalMicroseconds());
    }
    Time operator-(const Duration& span) const
    {
        return wrappingDifference(_microseconds, span.getTotalMicroseconds());
    }
    Time operator+=(const Duration& span) { return *this = *this + span; }
    Time operator-=(const Duration& span) { return *this = *this - span; }

    bool operator>(const Time& other) const { return _microseconds > other._microseconds; }
    bool operator<(const Time& other) const { return _microseconds < other._microseconds; }
    bool operator>=(const Time& other) const { return _microseconds >= other._microseconds; }
    bool operator<=(const Time& other) const { return _microseconds <= other._microseconds; }
    bool operator==(const Time& other) const { return _microseconds == other._microseconds; }
    bool operator!=(const Time& other) const { return _microseconds != other._microseconds; }

private:
    long long _microseconds;
};

} // namespace ZR::Corvale::Type
