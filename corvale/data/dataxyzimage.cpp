#include "corvale/data/dataxyzimage.h"

#include "corvale/data/paint.h"

namespace ZR::Corvale::Type {

namespace {

const std::string LogCategory = rk::log::addCategory("corvale.dataxyzimage");

// All of it is computed for every pixel and chosen from at the end, so that the loop has no branches.
PackedColor pointColor(float x)
{
    const float millimetres = x * 1000.0f;
    const float t = (millimetres - 300.0f) / 3700.0f;
    const PackedColor inRange = distanceColor(std::min(1.0f, std::max(0.0f, t))); // beyond 1 is as 1
    const PackedColor measured = millimetres < 300.0f ? DarkGrey : inRange;
    return x < 0.0f || x > 0.0f ? measured : Black; // neither 0 nor what is no number
}

} // namespace

boost::shared_ptr<ColorImage> XYZImage::toColorImage()
{
    return paint<Colors::Computed>(*this, LogCategory, [](const float* point) { return pointColor(*point); });
}

} // namespace ZR::Corvale::Type
