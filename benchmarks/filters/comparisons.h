#pragma once

#include "filters/pictures.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// A filter beside the function of OpenCV that a user would call in its place.
struct Comparison
{
    using Task = std::function<void()>;

    std::string name;
    Task ours;
    Task peer;           // writes into buffers that it keeps
    Task less;           // a part of the peer that does not count; may be empty
    std::size_t traffic; // bytes that the filter reads and writes
    double target;       // ours / peer, at most
    bool atBound;        // whether it should also be as fast as copying that traffic
};

/// All filters that look at pixels, on these pictures, which must outlive them.
std::vector<Comparison> pixelComparisons(const Pictures& pictures);

/// Those that look at features, which are squares of the pictures.
std::vector<Comparison> featureComparisons(const Pictures& pictures);
