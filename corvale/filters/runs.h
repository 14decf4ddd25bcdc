#pragma once

#include "corvale/filters/bits.h"
#include "corvale/filters/vectorised.h"

#include <vector>

namespace ZR::Corvale::Filters {

/// Finds the runs of a row: their number, and in `begins` the column where each begins and, behind the last,
/// the width. The vector grows as needed and keeps its size, so that it serves row after row.
/// `parts(left, right)` tells whether a new run begins between two neighbours; it is a plain function of two
/// numbers that the compiler can vectorise.
template <typename Component, typename Parts>
int findRuns(const Component* row, int width, const Parts& parts, std::vector<int>& begins)
{
    const auto find = [&parts](auto instructions, const Component* row, int width, int* begins, int* count) {
        const auto begun = [&parts, row](int x) { return parts(row[x - 1], row[x]); };
        int found = 0;
        begins[found++] = 0;
        for (int x = 1; x < width; x += WordBits)
            for (BitWord word = bitsOf(instructions, x, std::min(WordBits, width - x), begun); word != 0;
                 word &= word - 1)
                begins[found++] = x + lowestBit(word);
        begins[found] = width;
        *count = found;
    };
    int count = 0;
    if (begins.size() <= static_cast<std::size_t>(width))
        begins.resize(static_cast<std::size_t>(width) + 1);
    if (width > 0)
        runForInstructions(find, row, width, begins.data(), &count);
    return count;
}

} // namespace ZR::Corvale::Filters
