#pragma once

#include "corvale/data/data.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

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
