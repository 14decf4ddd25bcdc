#pragma once

#include "corvale/data/data.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ZR::Corvale::Filters {

/// What goes into a filter and what comes out of it: one value a port, null for no value.
using Values = std::vector<boost::shared_ptr<Data>>;

/// The payload of a value, which must not be null: null if the value holds another type or nothing.
template <typename Payload>
Payload* payload(const boost::shared_ptr<Data>& value)
{
    return static_cast<Payload*>(*value);
}

/// The number in a value, which must not be null: 0 if the value holds none of that type.
template <typename Number>
Number number(const boost::shared_ptr<Data>& value)
{
    return static_cast<Number>(*value);
}

/// A value for each of the payloads. To make them one by one costs more than to find out what most of them
/// hold, so a few at a time share a block of memory, which lasts as long as one of them is held.
template <typename Payload>
Values valuesOf(const std::vector<Payload>& payloads)
{
    constexpr std::size_t BlockSize = 16; // few, lest who keeps one keeps much
    Values values;
    values.reserve(payloads.size());
    for (auto first = payloads.begin(); first != payloads.end();) {
        const auto last = first + std::min<std::ptrdiff_t>(BlockSize, payloads.end() - first);
        const auto contents = boost::make_shared<std::vector<Payload>>(first, last);
        const auto block = boost::make_shared<std::vector<Data>>();
        block->reserve(contents->size());
        for (Payload& content : *contents) {
            block->emplace_back(boost::shared_ptr<Payload>(contents, &content));
            values.emplace_back(block, &block->back());
        }
        first = last;
    }
    return values;
}

/// The result of a filter with one output.
inline Values one(const boost::shared_ptr<Data>& value)
{
    return Values(1, value);
}

/// The same, with a new value that holds `content`: a number, an array, a pointer to a payload.
template <typename Content>
Values one(const Content& content)
{
    return one(boost::make_shared<Data>(content));
}

} // namespace ZR::Corvale::Filters
