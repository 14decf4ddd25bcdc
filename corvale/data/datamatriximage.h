#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

/// A plain field of numbers, for hosts: no built-in filter takes or makes one.
/// Threads: as `Image`.
class MatrixImage : public Image<float, 1>
{
public:
    using Image::Image;

    // Bounds are not checked.
    const float& pixel(int x, int y) const { return component(x, y, 0); }
    float& pixel(int x, int y) { return component(x, y, 0); }

    boost::shared_ptr<MatrixImage> clone() const { return Image::clone<MatrixImage>(); }
    boost::shared_ptr<MatrixImage> scaleDown(unsigned int factor) const
    {
        return Image::scaleDown<MatrixImage>(factor);
    }
    boost::shared_ptr<MatrixImage> extract(float x1, float y1, float x2, float y2) const
    {
        return Image::extract<MatrixImage>(x1, y1, x2, y2);
    }
    boost::shared_ptr<MatrixImage> extract(const Region2& region) const
    {
        return extract(region.start.x(), region.start.y(), region.end.x(), region.end.y());
    }
};

} // namespace ZR::Corvale::Type
