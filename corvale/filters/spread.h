#pragma once

#include "corvale/filters/runs.h"

#include <opencv2/core/mat.hpp>

#include <algorithm>
#include <array>
#include <cstdint>

namespace ZR::Corvale::Filters {

/// Gives each of 64 pixels the value of its run, or 0 if it is off: `values[0]` up to the first of the bits
/// `begins`, `values[1]` from there, and so on. There are `SpareValues` more than are begun, to be read only.
///
/// A vector at a time, without a branch: runs are short where there are many, and no processor can predict
/// how short. A permutation brings the values to their pixels.
inline void spread(Instructions<InstructionSet::Baseline>, BitWord on, BitWord begins, const int* values,
                   int* pixels)
{
    for (int i = 0; i < WordBits; ++i) {
        values += begins >> i & 1;
        pixels[i] = (on >> i & 1) != 0 ? *values : 0;
    }
}

constexpr std::size_t SpareValues = 16;

#if defined(CORVALE_AVX2)
// By the bits 1 to 7 of `begins`: how many runs have begun at each pixel since the first.
using RunNumbers = std::array<std::array<std::uint8_t, 8>, 128>;
constexpr RunNumbers makeRunNumbers()
{
    RunNumbers numbers = {};
    for (std::size_t begins = 0; begins < numbers.size(); ++begins)
        for (std::size_t i = 1; i < 8; ++i)
            numbers[begins][i] = static_cast<std::uint8_t>(numbers[begins][i - 1] + (begins >> (i - 1) & 1));
    return numbers;
}
constexpr RunNumbers runNumbers = makeRunNumbers();

CORVALE_AVX2 inline void spread(Instructions<InstructionSet::Avx2>, BitWord on, BitWord begins,
                                const int* values, int* pixels)
{
    if (on == 0) { // as in most of a usual picture
        for (int i = 0; i < WordBits; i += 8)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(pixels + i), _mm256_setzero_si256());
        return;
    }
    const __m256i ownBit = _mm256_setr_epi32(1, 2, 4, 8, 16, 32, 64, 128);
    for (int i = 0; i < WordBits; i += 8) {
        const BitWord begun = begins >> i & 0xff;
        const __m128i numbers =
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(runNumbers[begun >> 1].data()));
        // from the value of the first pixel on
        const __m256i known = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(values + (begun & 1)));
        const __m256i spreadOut = _mm256_permutevar8x32_epi32(known, _mm256_cvtepu8_epi32(numbers));
        const __m256i bits = _mm256_and_si256(_mm256_set1_epi32(static_cast<int>(on >> i & 0xff)), ownBit);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(pixels + i),
                            _mm256_and_si256(spreadOut, _mm256_cmpeq_epi32(bits, ownBit)));
        values += countBits(begun);
    }
}

CORVALE_AVX512 inline void spread(Instructions<InstructionSet::Avx512>, BitWord on, BitWord begins,
                                  const int* values, int* pixels)
{
    if (on == 0) {
        for (int i = 0; i < WordBits; i += 16)
            _mm512_storeu_si512(pixels + i, _mm512_setzero_si512());
        return;
    }
    // the bits from 1 up to that of the pixel
    const __m512i upTo = _mm512_setr_epi32(0x0000, 0x0002, 0x0006, 0x000e, 0x001e, 0x003e, 0x007e, 0x00fe,
                                           0x01fe, 0x03fe, 0x07fe, 0x0ffe, 0x1ffe, 0x3ffe, 0x7ffe, 0xfffe);
    for (int i = 0; i < WordBits; i += 16) {
        const BitWord begun = begins >> i & 0xffff;
        const __m512i numbers =
            _mm512_popcnt_epi32(_mm512_and_si512(_mm512_set1_epi32(static_cast<int>(begun)), upTo));
        const __m512i known = _mm512_loadu_si512(values + (begun & 1));
        _mm512_storeu_si512(pixels + i,
                            _mm512_maskz_permutexvar_epi32(static_cast<__mmask16>(on >> i), numbers, known));
        values += countBits(begun);
    }
}
#endif

/// The same for the rows of an image one after another. The image is new and has no gaps between its rows.
inline void spreadRuns(const RunWord* words, const int* values, cv::Mat& image)
{
    const auto spreadAll = [](auto instructions, const RunWord* word, const int* value, cv::Mat* image) {
        const int* const end = image->ptr<int>() + image->total();
        for (int y = 0; y < image->rows; ++y) {
            int* const row = image->ptr<int>(y);
            for (int first = 0; first < image->cols; first += WordBits, ++word) {
                int* const pixels = row + first;
                if (end - pixels < WordBits) {
                    std::array<int, WordBits> last;
                    spread(instructions, word->on, word->begins, value, last.data());
                    std::copy_n(last.data(), std::min(WordBits, image->cols - first), pixels);
                } else { // what goes beyond the end of a row is replaced by the next one
                    spread(instructions, word->on, word->begins, value, pixels);
                }
                value += countBits(word->begins);
            }
        }
    };
    runForInstructions(spreadAll, words, values, &image);
}

} // namespace ZR::Corvale::Filters
