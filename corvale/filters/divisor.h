#pragma once

namespace ZR::Corvale::Filters {

/// Divides many 16-bit numbers by one, cutting off the fraction as integers do, in steps that vectorise:
/// there is no vector instruction that divides integers.
///
/// It multiplies by the rounded reciprocal. The half keeps the product away from integers by at least half
/// a reciprocal, while both roundings together move it by less than a hundredth of one.
/// Threads: immutable.
class Divisor
{
public:
    /// `divisor` is 1..65535.
    explicit Divisor(unsigned int divisor) : _reciprocal(1.0f / static_cast<float>(divisor)) {}

    template <typename Number>
    Number quotient(Number number) const
    {
        static_assert(sizeof(Number) <= 2, "the proof holds for up to 16 bits");
        return static_cast<Number>(static_cast<int>((static_cast<float>(number) + 0.5f) * _reciprocal));
    }

private:
    float _reciprocal;
};

} // namespace ZR::Corvale::Filters
