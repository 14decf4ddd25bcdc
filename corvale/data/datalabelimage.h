#pragma once

#include "corvale/data/dataimage.h"

namespace ZR::Corvale::Type {

class ColorImage;

/// Regions: a pixel is the id of the region to which it belongs, 0 the background.
/// Threads: as `Image`.
class LabelImage : public ImageOf<LabelImage, int, 1>
{
public:
    using ImageOf::ImageOf;

    // Bounds are not checked.
    const int& pixel(int x, int y) const { return component(x, y, 0); }
    int& pixel(int x, int y) { return component(x, y, 0); }

    /// Background black, each region in a colour that tells where its first pixel lies, so that colours stay
    /// while regions do. Labels below 0 or above rows * cols count as background.
    /// The result is stamped with the time of the conversion and has the default name and no extents.
    /// Failure: null and one error line if the matrix has another type than this kind.
    boost::shared_ptr<ColorImage> toColorImage();

    /// Every pixel `from` becomes `to`. Failure: no change and one error line, as for `toColorImage`.
    void changeLabel(int from, int to);
};

} // namespace ZR::Corvale::Type
