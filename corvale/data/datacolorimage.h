#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

/// A picture in colour: a pixel is three bytes, red, green, blue.
/// Threads: as `Image`.
class ColorImage : public ImageOf<ColorImage, unsigned char, 3>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const unsigned char& pixelRed(int x, int y) const { return component(x, y, 0); }
    unsigned char& pixelRed(int x, int y) { return component(x, y, 0); }
    const unsigned char& pixelGreen(int x, int y) const { return component(x, y, 1); }
    unsigned char& pixelGreen(int x, int y) { return component(x, y, 1); }
    const unsigned char& pixelBlue(int x, int y) const { return component(x, y, 2); }
    unsigned char& pixelBlue(int x, int y) { return component(x, y, 2); }
};

} // namespace ZR::Corvale::Type
