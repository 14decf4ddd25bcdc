#pragma once

#include "corvale/filters/kinds.h"
#include "corvale/filters/values.h"

#include <cstddef>
#include <cstdint>

namespace ZR::Corvale::Filters {

/// One condition on the inputs of a filter, and whether its failing is reported. An input that is not
/// there counts as null.
/// Threads: immutable, so several threads may ask one.
class Guard
{
public:
    using Condition = bool (*)(const Values& inputs);

    /// There are exactly `number` inputs.
    static Guard count(std::size_t number);
    /// The input is not null.
    static Guard present(std::size_t input);
    /// The input is not null and of one of these kinds.
    static Guard kind(std::size_t input, const Kinds& kinds);
    /// The first two inputs are not null and of the same kind.
    static Guard sameKind();
    /// The input is not null and has a payload; the matrix of an image has the type of its kind.
    static Guard intact(std::size_t input);
    /// Any other condition.
    static Guard that(Condition condition);

    /// The same condition, failing of which is no error.
    Guard quietly() const;

    bool holds(const Values& inputs) const { return _test(*this, inputs); }
    bool quiet() const { return _quiet; }

private:
    using Test = bool (*)(const Guard& guard, const Values& inputs);

    explicit Guard(Test test, std::size_t input = 0) : _test(test), _input(input) {}
    const boost::shared_ptr<Data>& _value(const Values& inputs) const;

    Test _test;
    std::size_t _input;       // the index, or the number of inputs
    std::uint32_t _kinds = 0; // one bit a kind
    Condition _condition = nullptr;
    bool _quiet = false;
};

} // namespace ZR::Corvale::Filters
