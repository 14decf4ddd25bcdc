#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// A mask: a pixel is off at 0 and on at anything else.
/// Threads: as `Image`.
class BinaryImage : public Image<unsigned char, 1>
{
public:
    using Image::Image;

    // Bounds are not checked.
    const unsigned char& pixel(int x, int y) const { return component(x, y, 0); }
    unsigned char& pixel(int x, int y) { return component(x, y, 0); }

    boost::shared_ptr<BinaryImage> clone() const { return Image::clone<BinaryImage>(); }
    boost::shared_ptr<BinaryImage> scaleDown(unsigned int factor) const
    {
        return Image::scaleDown<BinaryImage>(factor);
    }
    boost::shared_ptr<BinaryImage> extract(float x1, float y1, float x2, float y2) const
    {
        return Image::extract<BinaryImage>(x1, y1, x2, y2);
    }
    boost::shared_ptr<BinaryImage> extract(const Region2& region) const
    {
        return extract(region.start.x(), region.start.y(), region.end.x(), region.end.y());
    }

    /// On pixels white, off ones black.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();
};

} // namespace ZR::Corvale::Type
