#include "corvale/data/datadepthimage.h"

#include "corvale/data/paint.h"

namespace ZR::Corvale::Type {

namespace {

const std::string LogCategory = rk::log::addCategory("corvale.datadepthimage");

constexpr int Nearest = 200; // millimetres
constexpr int Farthest = 4000;

// The colour of every distance up to the farthest, which is also that of all beyond it.
std::array<PackedColor, Farthest + 1> distanceColors()
{
    std::array<PackedColor, Farthest + 1> colors;
    for (int distance = 0; distance <= Farthest; ++distance)
        colors[distance] = distance == 0 ? Black
                           : distance < Nearest
                               ? DarkGrey
                               : distanceColor(static_cast<float>(distance - Nearest) / (Farthest - Nearest));
    return colors;
}

} // namespace

boost::shared_ptr<ColorImage> DepthImage::toColorImage()
{
    static const auto colors = distanceColors();
    return paint<Colors::LookedUp>(*this, LogCategory, [](const unsigned short* pixel) {
        return colors[std::min<int>(*pixel, Farthest)];
    });
}

} // namespace ZR::Corvale::Type
