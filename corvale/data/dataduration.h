#pragma once

#include "corvale/data/truncate.h"
#include "corvale/data/wrapping.h"

namespace ZR::Corvale::Type {

/// A span of time: a signed count of microseconds.
///
/// Sums wrap at the ends of 64 bits.
/// Threads: a plain value; one thread at a time, or several that read.
class Duration
{
public:
    Duration() : _microseconds(0) {}
    Duration(long long microseconds) : _microseconds(microseconds) {}

    static Duration Microseconds(long long count) { return count; }
    static Duration Milliseconds(long long count) { return wrappingProduct(count, 1'000); }
    static Duration Seconds(long long count) { return wrappingProduct(count, 1'000'000); }
    static Duration Minutes(long long count) { return wrappingProduct(count, 60'000'000); }
    static Duration Hours(long long count) { return wrappingProduct(count, 3'600'000'000); }

    // Whole units, cut toward zero.
    long long getTotalMicroseconds() const { return _microseconds; }
    long long getTotalMilliseconds() const { return _microseconds / 1'000; }
    long long getTotalSeconds() const { return _microseconds / 1'000'000; }

    /// Blocks the calling thread for the span in whole milliseconds, cut to 32 bits: a negative span
    /// blocks for weeks.
    void sleep();

    Duration operator+(const Duration& other) const
    {
        return wrappingSum(_microseconds, other._microseconds);
    }
    Duration operator-(const Duration& other) const
    {
        return wrappingDifference(_microseconds, other._microseconds);
    }
    Duration operator+=(const Duration& other) { return *this = *this + other; }
    Duration operator-=(const Duration& other) { return *this = *this - other; }

    // The count goes through a float, so the result is good to 24 bits. What does not fit becomes the
    // nearest count that does.
    Duration operator*(float factor) const { return scaled(static_cast<float>(_microseconds) * factor); }
    Duration operator/(float divisor) const { return scaled(static_cast<float>(_microseconds) / divisor); }
    Duration operator*=(float factor) { return *this = *this * factor; }
    Duration operator/=(float divisor) { return *this = *this / divisor; }

    bool operator>(const Duration& other) const { return _microseconds > other._microseconds; }
    bool operator<(const Duration& other) const { return _microseconds < other._microseconds; }
    bool operator>=(const Duration& other) const { return _microseconds >= other._microseconds; }
    bool operator<=(const Duration& other) const { return _microseconds <= other._microseconds; }
    bool operator==(const Duration& other) const { return _microseconds == other._microseconds; }
    bool operator!=(const Duration& other) const { return _microseconds != other._microseconds; }

private:
    static Duration scaled(float microseconds) { return truncate<long long>(microseconds); }

    long long _microseconds;
};

} // namespace ZR::Corvale::Type
