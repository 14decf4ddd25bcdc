#include "corvale/filters/levelcounts.h"

#include "corvale/filters/rows.h"

namespace ZR::Corvale::Filters {

namespace {

// Neighbours often have the same level, and counting it twice in one place waits for the first count to be
// stored. So each level has several counts, which the components take in turn and which are added up at the
// end. Those of a level lie together, in one line of the cache: on pictures, with levels that are close to
// one another, that is faster than whole tables one behind the other; on noise it makes no difference.
constexpr std::size_t Counts = 16;

template <std::size_t Channels>
std::array<LevelCounts, Channels> countInTurn(const cv::Mat& image)
{
    constexpr std::size_t Used = Counts / Channels * Channels;
    alignas(64) std::array<std::array<std::uint32_t, Counts>, 256> levels = {};
    std::array<LevelCounts, Channels> counts = {};
    for (int y = 0; y < image.rows; ++y) {
        const uchar* row = image.ptr(y);
        const std::size_t components = static_cast<std::size_t>(image.cols) * Channels;
        std::size_t i = 0;
        for (; i + Used <= components; i += Used)
            for (std::size_t k = 0; k < Used; ++k)
                ++levels[row[i + k]][k];
        for (; i < components; ++i)
            ++counts[i % Channels][row[i]];
    }
    for (std::size_t level = 0; level < 256; ++level)
        for (std::size_t k = 0; k < Used; ++k)
            counts[k % Channels][level] += levels[level][k];
    return counts;
}

} // namespace

LevelCounts countLevels(const cv::Mat& greys)
{
    return countInTurn<1>(greys)[0];
}

std::array<LevelCounts, 3> countColourLevels(const cv::Mat& colours)
{
    return countInTurn<3>(colours);
}

} // namespace ZR::Corvale::Filters
