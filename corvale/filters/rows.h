#pragma once

#include "corvale/filters/vectorised.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <tuple>

namespace ZR::Corvale::Filters {

// Calls `kernel(units, row of the first image, row of the second, ...)` for each row of images of one
// size, `unitsPerPixel` units to a pixel of a row.
template <typename... Components, typename Kernel, typename... Images>
void walkRows(int unitsPerPixel, const Kernel& kernel, const Images&... images)
{
    const cv::Mat& first = std::get<0>(std::tie(images...));
    std::size_t rows = static_cast<std::size_t>(first.rows);
    std::size_t units = static_cast<std::size_t>(first.cols) * static_cast<std::size_t>(unitsPerPixel);
    if ((images.isContinuous() && ...)) { // without gaps they are one long row
        units *= rows;
        rows = units > 0 ? 1 : 0;
    }
    for (std::size_t y = 0; y < rows; ++y)
        runVectorised(kernel, units, reinterpret_cast<Components*>(images.data + images.step[0] * y)...);
}

/// Walks images of the same size in step, by rows; a part of a larger image is walked like any other.
///
///     forEachPixelRow<const uchar, uchar>(
///         [](std::size_t pixels, const uchar* colours, uchar* greys) { ... }, image, result);
///
/// The kernel gets the number of pixels and a pointer into each image, to components of the type named
/// for it, and may write to the images that are new. It sees one row or several at once.
template <typename... Components, typename Kernel, typename... Images>
void forEachPixelRow(const Kernel& kernel, const Images&... images)
{
    walkRows<Components...>(1, kernel, images...);
}

/// The same, where the kernel gets the number of components of the first image in place of the pixels.
template <typename... Components, typename Kernel, typename... Images>
void forEachComponentRow(const Kernel& kernel, const Images&... images)
{
    walkRows<Components...>(std::get<0>(std::tie(images...)).channels(), kernel, images...);
}

} // namespace ZR::Corvale::Filters
