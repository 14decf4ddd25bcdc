#pragma once

#include "corvale/filters/vectorised.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ZR::Corvale::Filters {

/// Finds the runs of a row: their number, and in `begins` the column where each begins and, behind the last,
/// the width. The vector grows as needed and keeps its size, so that it serves row after row.
/// `parts(left, right)` tells whether a new run begins between two neighbours; it is a plain function of two
/// numbers that the compiler can vectorise.
template <typename Component, typename Parts>
int findRuns(const Component* row, int width, const Parts& parts, std::vector<int>& begins)
{
    const auto find = [&parts](const Component* row, int width, int* begins, int* count) {
        constexpr int Chunk = 512;
        constexpr int Block = 16;
        unsigned char begun[Chunk + Block];
        int found = 0;
        begins[found++] = 0;
        for (int chunk = 1; chunk < width; chunk += Chunk) {
            const int size = std::min(Chunk, width - chunk);
            const Component* pixels = row + chunk;
            for (int i = 0; i < size; ++i)
                begun[i] = parts(pixels[i - 1], pixels[i]);
            std::fill_n(begun + size, Block, static_cast<unsigned char>(0));
            // Most blocks lie within a run, which is quickly seen. In the others a column is written wherever
            // a run may begin and stays if one does: no branch depends on the pixels.
            for (int block = 0; block < size; block += Block) {
                std::uint64_t words[Block / 8];
                std::memcpy(words, begun + block, sizeof words);
                if ((words[0] | words[1]) != 0)
                    for (int i = block; i < block + Block; ++i) {
                        begins[found] = chunk + i;
                        found += begun[i];
                    }
            }
        }
        begins[found] = width;
        *count = found;
    };
    int count = 0;
    if (begins.size() <= static_cast<std::size_t>(width))
        begins.resize(static_cast<std::size_t>(width) + 1);
    if (width > 0)
        runVectorised(find, row, width, begins.data(), &count);
    return count;
}

} // namespace ZR::Corvale::Filters
