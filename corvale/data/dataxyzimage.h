#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// Points in metres: `x` is the distance along the view, x = 0 is no measurement.
/// Threads: as `Image`.
class XYZImage : public ImageOf<XYZImage, float, 3>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const float& pixelX(int x, int y) const { return component(x, y, 0); }
    float& pixelX(int x, int y) { return component(x, y, 0); }
    const float& pixelY(int x, int y) const { return component(x, y, 1); }
    float& pixelY(int x, int y) { return component(x, y, 1); }
    const float& pixelZ(int x, int y) const { return component(x, y, 2); }
    float& pixelZ(int x, int y) { return component(x, y, 2); }

    /// The distance from red (0.3 m) by green to blue (4 m and beyond); nearer is dark grey, no measurement
    /// black.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();
};

} // namespace ZR::Corvale::Type
