#pragma once

#include "corvale/filters/bits.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

// Runs of a row: pixels side by side that are on (not 0) and between which nothing parts. Where they begin
// and end is found by bits, many pixels at a time.

/// A word of a row: the pixels that are on, and those with which a run begins.
struct RunWord
{
    BitWord on = 0;
    BitWord begins = 0;
};

/// Calls `visit(first, RunWord, ends)` for each word of a row, of which `first` is the first place and `ends`
/// the pixels with which a run ends. `parts(left, right)` tells whether a run cannot go on from one pixel to
/// the next, as from one that is off to one that is on; it is a plain function of two numbers that the
/// compiler can vectorise.
template <typename Instructions, typename Component, typename Parts, typename Visitor>
void forEachRunWord(Instructions instructions, const Component* row, int width, const Parts& parts,
                    const Visitor& visit)
{
    const auto isOn = [row](int x) { return row[x] != 0; };
    const auto partsAt = [&](int x) { return parts(row[x - 1], row[x]); };
    BitWord parting = 1; // whether the first pixel of a word parts from the one before
    for (int first = 0; first < width; first += WordBits) {
        const int left = width - first;
        const BitWord on = bitsOf(instructions, first, std::min(WordBits, left), isOn);
        BitWord next = ~BitWord{0}; // whether a pixel and the next part, as the last pixel and none do
        if (on != 0 && left > 1) {
            next = bitsOf(instructions, first + 1, std::min(WordBits, left - 1), partsAt);
            if (left <= WordBits)
                next |= BitWord{1} << (left - 1);
        }
        visit(first, RunWord{on, on & (next << 1 | parting)}, on & next);
        parting = next >> (WordBits - 1);
    }
}

/// Where a run lies in a row.
struct Run
{
    int begin;
    int last;
};

constexpr std::size_t SpareRuns = 4;

/// Writes the places of the bits of a word, of which the first is at `first`, to that member of the runs and
/// returns how many they are; up to `SpareRuns` more are written in vain. Words have mostly fewer bits than
/// that, so that one step is enough, and no processor needs to predict how many there are.
inline std::size_t notePlaces(BitWord bits, int first, int Run::*place, Run* runs)
{
    const auto count = static_cast<std::size_t>(countBits(bits));
    for (std::size_t noted = 0; noted < count; noted += SpareRuns)
        for (std::size_t i = noted; i < noted + SpareRuns; ++i, bits &= bits - 1)
            runs[i].*place = first + lowestBit(bits);
    return count;
}

} // namespace ZR::Corvale::Filters
