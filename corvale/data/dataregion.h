#pragma once

namespace ZR::Corvale::Type {

/// A box between two opposite corners, taken as they come: nothing puts them in order.
/// Threads: a plain value; one thread at a time, or several that read.
template <typename V>
class Region
{
public:
    Region(const V& from, const V& to) : start(from), end(to) {}
    Region(const Region&) = default;
    Region& operator=(const Region&) = default;
    virtual ~Region() = default;

    V start;
    V end;
};

} // namespace ZR::Corvale::Type
