#pragma once

#include "corvale/filters/guard.h"

#include <algorithm>
#include <cstdint>

namespace ZR::Corvale::Filters {

/// The least and the greatest column and row of a region; out of order if it has no pixels.
struct RegionExtent
{
    void addRun(int y, int begin, int end)
    {
        minX = std::min(minX, static_cast<std::uint16_t>(begin));
        maxX = std::max(maxX, static_cast<std::uint16_t>(end - 1));
        minY = std::min(minY, static_cast<std::uint16_t>(y));
        maxY = static_cast<std::uint16_t>(y); // rows come in their order
    }

    std::uint16_t minX = 65535;
    std::uint16_t minY = 65535;
    std::uint16_t maxX = 0;
    std::uint16_t maxY = 0;
};

/// Columns and rows of the first input can be counted in 16 bits, if it is an image of labels.
Guard countableLabels();

} // namespace ZR::Corvale::Filters
