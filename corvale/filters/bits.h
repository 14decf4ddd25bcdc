#pragma once

#include "corvale/filters/vectorised.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(CORVALE_AVX2)
#include <immintrin.h>
#endif

namespace ZR::Corvale::Filters {

// Rows of pixels as bits in words, the first pixel in the lowest bit: what most pixels are not is found there
// many pixels at a time.

using BitWord = std::uint64_t;
constexpr int WordBits = 64;

constexpr std::size_t wordsOf(int bits)
{
    return static_cast<std::size_t>((bits + WordBits - 1) / WordBits);
}

inline int countBits(BitWord word)
{
    return static_cast<int>(std::bitset<WordBits>(word).count());
}

/// Where the lowest bit of a word is that is set; one must be.
inline int lowestBit(BitWord word)
{
    return countBits(~word & (word - 1));
}

/// A flag, 0 or 1, for each bit of a word.
using Flags = std::array<std::uint8_t, WordBits>;

/// The word. Compilers know no way from flags to bits that is as short as the instruction for it.
inline BitWord packed(Instructions<InstructionSet::Baseline>, const Flags& flags)
{
    std::array<BitWord, WordBits / 8> words;
    std::memcpy(words.data(), flags.data(), sizeof words);
    BitWord bits = 0;
    for (std::size_t w = 0; w < words.size(); ++w) // the product collects the lowest bits in the highest byte
        bits |= words[w] * 0x0102040810204080 >> (WordBits - 8) << 8 * w;
    return bits;
}

#if defined(CORVALE_AVX2)
CORVALE_AVX2 inline BitWord packed(Instructions<InstructionSet::Avx2>, const Flags& flags)
{
    const auto* const halves = reinterpret_cast<const __m256i*>(flags.data());
    const int low = _mm256_movemask_epi8(_mm256_slli_epi16(_mm256_loadu_si256(halves), 7));
    const int high = _mm256_movemask_epi8(_mm256_slli_epi16(_mm256_loadu_si256(halves + 1), 7));
    return BitWord{static_cast<std::uint32_t>(high)} << 32 | static_cast<std::uint32_t>(low);
}

CORVALE_AVX512 inline BitWord packed(Instructions<InstructionSet::Avx512>, const Flags& flags)
{
    const __m512i bytes = _mm512_loadu_si512(flags.data());
    return _mm512_test_epi8_mask(bytes, bytes);
}
#endif

/// A word of `size` bits, at least one, which tell whether `flag(place)` holds for the places from `begin`
/// on. `flag` is a plain function that the compiler can vectorise. It may be asked for places in front, but
/// not below 0.
template <typename Instructions, typename Flag>
BitWord bitsOf(Instructions instructions, int begin, int size, const Flag& flag)
{
    if (size < WordBits && begin + size > WordBits) // whole words are faster
        return bitsOf(instructions, begin + size - WordBits, WordBits, flag) >> (WordBits - size);
    Flags flags = {};
    if (size == WordBits)
        for (int i = 0; i < WordBits; ++i)
            flags[i] = flag(begin + i);
    else
        for (int i = 0; i < size; ++i)
            flags[i] = flag(begin + i);
    return packed(instructions, flags);
}

} // namespace ZR::Corvale::Filters
