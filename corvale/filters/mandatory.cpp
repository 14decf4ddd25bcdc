#include "corvale/filters/mandatory.h"

#include "corvale/runtime/port.h"

#include <algorithm>
#include <utility>

namespace ZR::Corvale::Filters {

Mandatory::Mandatory(const std::string& name, int count) : FilterPrimitive(name), _count(count)
{
    for (int i = 1; i <= _count; ++i) {
        _addInput("in" + std::to_string(i));
        _addOutput("out" + std::to_string(i));
    }
}

Values Mandatory::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    const std::size_t count = static_cast<std::size_t>(std::max(_count, 0));
    Values values;
    values.reserve(count);
    while (values.size() < count) {
        const std::size_t i = values.size();
        if (i >= inputs.size() || !inputs[i])
            return Values(count);
        values.push_back(inputs[i]);
    }
    return values;
}

Values Mandatory::consume(Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                          long long depth)
{
    const bool present =
        std::all_of(inputs.begin(), inputs.end(), [](const auto& value) { return value != nullptr; });
    if (!present || inputs.size() != static_cast<std::size_t>(std::max(_count, 0)))
        return applyFilter(inputs, processHash, scopeHash, depth);
    return std::move(inputs);
}

} // namespace ZR::Corvale::Filters
