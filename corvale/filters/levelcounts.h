#pragma once

#include <opencv2/core/mat.hpp>

#include <array>
#include <cstdint>

namespace ZR::Corvale::Filters {

/// How often each level of a component occurs.
using LevelCounts = std::array<std::uint64_t, 256>;

/// Counts the levels of a grey image, of type `CV_8UC1`.
LevelCounts countLevels(const cv::Mat& greys);

/// Counts those of red, green and blue in an image of type `CV_8UC3`.
std::array<LevelCounts, 3> countColourLevels(const cv::Mat& colours);

} // namespace ZR::Corvale::Filters
