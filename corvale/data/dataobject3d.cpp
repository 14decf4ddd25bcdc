#include "corvale/data/dataobject3d.h"

#include <utility>

namespace ZR::Corvale::Type {

Object3D::Object3D(boost::shared_ptr<Region3> region) : Object(std::move(region)) {}

Object3D::~Object3D() = default;

std::string Object3D::toString()
{
    return propertiesText();
}

} // namespace ZR::Corvale::Type
