#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// A grey picture: a pixel is an intensity.
/// Threads: as `Image`.
class GrayscaleImage : public Image<unsigned char, 1>
{
public:
    using Image::Image;

    // Bounds are not checked.
    const unsigned char& pixel(int x, int y) const { return component(x, y, 0); }
    unsigned char& pixel(int x, int y) { return component(x, y, 0); }

    boost::shared_ptr<GrayscaleImage> clone() const { return Image::clone<GrayscaleImage>(); }
    boost::shared_ptr<GrayscaleImage> scaleDown(unsigned int factor) const
    {
        return Image::scaleDown<GrayscaleImage>(factor);
    }
    boost::shared_ptr<GrayscaleImage> extract(float x1, float y1, float x2, float y2) const
    {
        return Image::extract<GrayscaleImage>(x1, y1, x2, y2);
    }
    boost::shared_ptr<GrayscaleImage> extract(const Region2& region) const
    {
        return extract(region.start.x(), region.start.y(), region.end.x(), region.end.y());
    }

    /// The same picture, its three colours equal.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();
};

} // namespace ZR::Corvale::Type
