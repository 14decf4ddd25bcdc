#include "corvale/data/datagrayscaleimage.h"

#include "corvale/data/paint.h"

namespace ZR::Corvale::Type {

namespace {
const std::string LogCategory = rk::log::addCategory("corvale.datagrayscaleimage");
}

boost::shared_ptr<ColorImage> GrayscaleImage::toColorImage()
{
    return paint<Colors::Computed>(*this, LogCategory,
                                   [](const unsigned char* pixel) { return packed(*pixel, *pixel, *pixel); });
}

} // namespace ZR::Corvale::Type
