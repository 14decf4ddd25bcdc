#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

/// A plain field of numbers, for hosts: no built-in filter takes or makes one.
/// Threads: as `Image`.
class MatrixImage : public ImageOf<MatrixImage, float, 1>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const float& pixel(int x, int y) const { return component(x, y, 0); }
    float& pixel(int x, int y) { return component(x, y, 0); }
};

} // namespace ZR::Corvale::Type
