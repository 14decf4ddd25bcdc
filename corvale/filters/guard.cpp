#include "corvale/filters/guard.h"

namespace ZR::Corvale::Filters {

namespace {

// Filters walk rows of pixels of a known type: a matrix of another type or of more dimensions has none.
bool isIntact(const boost::shared_ptr<Data>& value)
{
    if (!value || !payload<void>(value))
        return false;
    bool suits = true;
    visitImageClass(value->getType(), [&](auto imageClass) {
        using Image = typename decltype(imageClass)::type;
        const cv::Mat& mat = payload<Image>(value)->mat;
        suits = mat.dims <= 2 && mat.type() == Image::MatType;
    });
    return suits;
}

std::uint32_t bit(DataType kind)
{
    return std::uint32_t(1) << kind;
}

} // namespace

const boost::shared_ptr<Data>& Guard::_value(const Values& inputs) const
{
    static const boost::shared_ptr<Data> missing;
    return _input < inputs.size() ? inputs[_input] : missing;
}

Guard Guard::count(std::size_t number)
{
    return Guard([](const Guard& guard, const Values& inputs) { return inputs.size() == guard._input; },
                 number);
}

Guard Guard::present(std::size_t input)
{
    return Guard([](const Guard& guard, const Values& inputs) { return bool(guard._value(inputs)); }, input);
}

Guard Guard::kind(std::size_t input, const Kinds& kinds)
{
    Guard guard(
        [](const Guard& self, const Values& inputs) {
            const boost::shared_ptr<Data>& value = self._value(inputs);
            return value && (self._kinds & bit(value->getType())) != 0;
        },
        input);
    for (const DataType kind : kinds)
        guard._kinds |= bit(kind);
    return guard;
}

Guard Guard::sameKind()
{
    return that([](const Values& inputs) {
        return inputs.size() >= 2 && inputs[0] && inputs[1] && inputs[0]->getType() == inputs[1]->getType();
    });
}

Guard Guard::intact(std::size_t input)
{
    return Guard([](const Guard& guard, const Values& inputs) { return isIntact(guard._value(inputs)); },
                 input);
}

Guard Guard::that(Condition condition)
{
    Guard guard([](const Guard& self, const Values& inputs) { return self._condition(inputs); });
    guard._condition = condition;
    return guard;
}

Guard Guard::quietly() const
{
    Guard guard = *this;
    guard._quiet = true;
    return guard;
}

} // namespace ZR::Corvale::Filters
