#include "corvale/data/dataobject2d.h"

#include <utility>

namespace ZR::Corvale::Type {

Object2D::Object2D(boost::shared_ptr<Region2> region) : Object(std::move(region)) {}

Object2D::~Object2D() = default;

std::string Object2D::toString()
{
    return propertiesText();
}

} // namespace ZR::Corvale::Type
