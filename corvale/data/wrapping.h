#pragma once

namespace ZR::Corvale {

// Sums of counts of microseconds go around at the ends of their range instead of being undefined there.
inline long long wrappingSum(long long a, long long b)
{
    return static_cast<long long>(static_cast<unsigned long long>(a) + static_cast<unsigned long long>(b));
}

inline long long wrappingDifference(long long a, long long b)
{
    return static_cast<long long>(static_cast<unsigned long long>(a) - static_cast<unsigned long long>(b));
}

inline long long wrappingProduct(long long a, long long b)
{
    return static_cast<long long>(static_cast<unsigned long long>(a) * static_cast<unsigned long long>(b));
}

} // namespace ZR::Corvale
