#include "corvale/filters/levelcounts.h"

#include "corvale/filters/rows.h"

namespace ZR::Corvale::Filters {

namespace {

// Neighbours often have the same level, and counting it twice in one place waits for the first count to be
// stored. So the components go to `Tables` tables in turn, which are added up at the end. The tables are not
// a power of two apart, at which processors take one place for another.
template <std::size_t Channels, std::size_t Tables>
std::array<LevelCounts, Channels> countInTurn(const cv::Mat& image)
{
    std::array<std::array<std::uint32_t, 256 + 8>, Tables> tables = {};
    std::array<LevelCounts, Channels> counts = {};
    for (int y = 0; y < image.rows; ++y) {
        const uchar* row = image.ptr(y);
        const std::size_t components = static_cast<std::size_t>(image.cols) * Channels;
        std::size_t i = 0;
        for (; i + Tables <= components; i += Tables)
            for (std::size_t table = 0; table < Tables; ++table)
                ++tables[table][row[i + table]];
        for (; i < components; ++i)
            ++counts[i % Channels][row[i]];
    }
    for (std::size_t table = 0; table < Tables; ++table)
        for (std::size_t level = 0; level < 256; ++level)
            counts[table % Channels][level] += tables[table][level];
    return counts;
}

} // namespace

LevelCounts countLevels(const cv::Mat& greys)
{
    return countInTurn<1, 8>(greys)[0];
}

std::array<LevelCounts, 3> countColourLevels(const cv::Mat& colours)
{
    return countInTurn<3, 12>(colours);
}

} // namespace ZR::Corvale::Filters
