#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// Distances: a pixel is in millimetres, 0 is no measurement.
/// Threads: as `Image`.
class DepthImage : public ImageOf<DepthImage, unsigned short, 1>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const unsigned short& pixel(int x, int y) const { return component(x, y, 0); }
    unsigned short& pixel(int x, int y) { return component(x, y, 0); }

    /// From red (0.2 m) by green to blue (4 m and beyond); nearer is dark grey, no measurement black.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();
};

} // namespace ZR::Corvale::Type
