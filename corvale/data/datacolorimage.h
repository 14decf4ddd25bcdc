#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

/// A picture in colour: a pixel is three bytes, red, green, blue.
/// Threads: as `Image`.
class ColorImage : public Image<unsigned char, 3>
{
public:
    using Image::Image;

    // Bounds are not checked.
    const unsigned char& pixelRed(int x, int y) const { return component(x, y, 0); }
    unsigned char& pixelRed(int x, int y) { return component(x, y, 0); }
    const unsigned char& pixelGreen(int x, int y) const { return component(x, y, 1); }
    unsigned char& pixelGreen(int x, int y) { return component(x, y, 1); }
    const unsigned char& pixelBlue(int x, int y) const { return component(x, y, 2); }
    unsigned char& pixelBlue(int x, int y) { return component(x, y, 2); }

    boost::shared_ptr<ColorImage> clone() const { return Image::clone<ColorImage>(); }
    boost::shared_ptr<ColorImage> scaleDown(unsigned int factor) const
    {
        return Image::scaleDown<ColorImage>(factor);
    }
    boost::shared_ptr<ColorImage> extract(float x1, float y1, float x2, float y2) const
    {
        return Image::extract<ColorImage>(x1, y1, x2, y2);
    }
    boost::shared_ptr<ColorImage> extract(const Region2& region) const
    {
        return extract(region.start.x(), region.start.y(), region.end.x(), region.end.y());
    }
};

} // namespace ZR::Corvale::Type
