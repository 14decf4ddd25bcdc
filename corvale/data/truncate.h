#pragma once

#include <limits>

namespace ZR::Corvale {

/// The integer that is left when the fraction of `value` is cut off. What does not fit becomes the
/// nearest integer that does; what is not a number becomes the lowest.
template <typename Integer, typename Real>
constexpr Integer truncate(Real value)
{
    using Limits = std::numeric_limits<Integer>;
    // The greatest integer need not be a Real, but the power of two after it is.
    constexpr Real end = Real(Integer(1) << (Limits::digits - 1)) * 2;
    if (value >= end)
        return Limits::max();
    if (value >= Real(Limits::lowest()))
        return static_cast<Integer>(value);
    return Limits::lowest();
}

} // namespace ZR::Corvale
