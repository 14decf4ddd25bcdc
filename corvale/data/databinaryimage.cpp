#include "corvale/data/databinaryimage.h"

#include "corvale/data/paint.h"

namespace ZR::Corvale::Type {

namespace {
const std::string LogCategory = rk::log::addCategory("corvale.databinaryimage");
}

boost::shared_ptr<ColorImage> BinaryImage::toColorImage()
{
    return paint<Colors::Computed>(*this, LogCategory,
                                   [](const unsigned char* pixel) { return *pixel ? White : Black; });
}

} // namespace ZR::Corvale::Type
