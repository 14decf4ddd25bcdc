#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// A mask: a pixel is off at 0 and on at anything else.
/// Threads: as `Image`.
class BinaryImage : public ImageOf<BinaryImage, unsigned char, 1>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const unsigned char& pixel(int x, int y) const { return component(x, y, 0); }
    unsigned char& pixel(int x, int y) { return component(x, y, 0); }

    /// On pixels white, off ones black.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();
};

} // namespace ZR::Corvale::Type
