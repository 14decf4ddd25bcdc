#pragma once

#include <cstdint>

namespace ZR::Corvale::Filters {

/// Divides many numbers of up to 16 bits by one, cutting off the fraction as integers do, in steps that
/// vectorise: there is no vector instruction that divides integers.
/// Threads: immutable.
class Divisor
{
public:
    /// `divisor` is 1..65535.
    explicit Divisor(unsigned int divisor)
        : _divisor(divisor),
          _reciprocal(1.0f / static_cast<float>(divisor)),
          _share(static_cast<std::uint16_t>(65535 / divisor))
    {
    }

    /// Multiplies by the rounded reciprocal. The half keeps the product away from integers by at least half
    /// a reciprocal, while both roundings together move it by less than a hundredth of one.
    std::uint16_t quotient(std::uint16_t number) const
    {
        return static_cast<std::uint16_t>(
            static_cast<int>((static_cast<float>(number) + 0.5f) * _reciprocal));
    }
    /// A byte by a divisor up to 256, which is small enough.
    unsigned char quotient(unsigned char number) const
    {
        return static_cast<unsigned char>(smallQuotient(number));
    }

    /// Twice as fast, for numbers that are small enough.
    ///
    /// The share is below 65536 / divisor by at most 1, so that (number + 1) * share / 65536 is below
    /// (number + 1) / divisor by at most (number + 1) / 65536. That is at most 1 / divisor: what is left is
    /// below (number + 1) / divisor and not below number / divisor, between which lies no integer.
    std::uint16_t smallQuotient(std::uint16_t number) const
    {
        return static_cast<std::uint16_t>(std::uint32_t{static_cast<std::uint16_t>(number + 1)} * _share >>
                                          16);
    }
    bool isSmall(std::uint16_t number) const { return (number + 1u) * _divisor <= 65536 && number < 65535; }

private:
    unsigned int _divisor;
    float _reciprocal;
    std::uint16_t _share;
};

} // namespace ZR::Corvale::Filters
