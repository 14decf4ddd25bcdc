#pragma once

#include <cstdint>

namespace ZR::Corvale::Filters {

/// Divides many numbers by one, cutting off the fraction as integers do, in steps that vectorise: there is no
/// vector instruction that divides integers. (By a constant the compiler finds such steps itself.)
/// Threads: immutable.
class Divisor
{
public:
    /// `divisor` is 1..65535, and up to 256 where bytes are divided.
    explicit Divisor(unsigned int divisor)
        : _reciprocal(1.0f / static_cast<float>(divisor)),
          _share(65535 / divisor)
    {
    }

    /// Multiplies by the rounded reciprocal. The half keeps the product away from integers by at least half
    /// a reciprocal, while both roundings together move it by less than a hundredth of one.
    std::uint16_t quotient(std::uint16_t number) const
    {
        return static_cast<std::uint16_t>(
            static_cast<int>((static_cast<float>(number) + 0.5f) * _reciprocal));
    }

    /// Multiplies by the share of 65535. It is below 65536 / divisor by at most 1, so that the product is
    /// below (number + 1) / divisor, but by no more than (number + 1) / 65536, which is at most 1 / divisor.
    /// From number / divisor up to there no integer begins.
    std::uint8_t quotient(std::uint8_t number) const
    {
        return static_cast<std::uint8_t>((number + 1u) * _share >> 16);
    }

private:
    float _reciprocal;
    std::uint32_t _share;
};

} // namespace ZR::Corvale::Filters
