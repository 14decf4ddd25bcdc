#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZR::Corvale::Filters {

// Rows of pixels as bits in words, the first pixel in the lowest bit: what most pixels are not is found there
// many pixels at a time.

using BitWord = std::uint64_t;
constexpr int WordBits = 64;

constexpr std::size_t wordsOf(int bits)
{
    return static_cast<std::size_t>((bits + WordBits - 1) / WordBits);
}

inline bool testBit(const BitWord* words, int place)
{
    return (words[place / WordBits] >> place % WordBits & 1) != 0;
}

inline int countBits(BitWord word)
{
    return static_cast<int>(std::bitset<WordBits>(word).count());
}

inline void setBit(BitWord* words, int place)
{
    words[place / WordBits] |= BitWord{1} << place % WordBits;
}

/// Where the lowest bit of a word is that is set; one must be.
inline int lowestBit(BitWord word)
{
    return countBits(~word & (word - 1));
}

/// A word of `size` bits, which tell whether `flag(place)` holds for the places from `begin` on. `flag` is a
/// plain function that the compiler can vectorise. It may be asked for places in front, but not below 1.
template <typename Flag>
BitWord bitsOf(int begin, int size, const Flag& flag)
{
    if (size < WordBits && begin + size > WordBits) // whole words are faster
        return bitsOf(begin + size - WordBits, WordBits, flag) >> (WordBits - size);
    std::array<std::uint8_t, WordBits> bytes = {};
    if (size == WordBits)
        for (int i = 0; i < WordBits; ++i)
            bytes[i] = flag(begin + i);
    else
        for (int i = 0; i < size; ++i)
            bytes[i] = flag(begin + i);
    std::array<BitWord, WordBits / 8> words;
    std::memcpy(words.data(), bytes.data(), sizeof words);
    BitWord any = 0;
    for (const BitWord word : words)
        any |= word;
    if (any == 0) // as mostly
        return 0;
    BitWord bits = 0;
    for (std::size_t w = 0; w < words.size(); ++w) // the product collects the lowest bits in the highest byte
        bits |= words[w] * 0x0102040810204080 >> (WordBits - 8) << 8 * w;
    return bits;
}

} // namespace ZR::Corvale::Filters
