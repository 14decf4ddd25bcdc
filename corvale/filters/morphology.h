#pragma once

#include "corvale/filters/inputguards.h"

#include <opencv2/core/mat.hpp>

namespace ZR::Corvale::Filters {

// What the filters share that look at a square around each pixel. Its side is `size` if that is odd and
// `size` + 1 if it is even; where it reaches beyond the image, only what lies inside counts.

/// The kinds of images that grow and shrink.
Kinds morphologyKinds();

/// The guards of a filter that takes such an image and the size of the square.
std::vector<Guard> morphologyGuards();

/// Each component of a pixel becomes the greatest one of the square. The matrix has components of 8 or 16
/// bits, or floats. Throws `cv::Exception` if `size` is below 0.
cv::Mat dilated(const cv::Mat& image, int size);

/// The same with the least one, without floats.
cv::Mat eroded(const cv::Mat& image, int size);

} // namespace ZR::Corvale::Filters
