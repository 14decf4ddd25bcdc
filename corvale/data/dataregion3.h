#pragma once

#include "corvale/data/dataregion.h"
#include "corvale/data/datavector3.h"

namespace ZR::Corvale::Type {

/// A box in space.
class Region3 : public Region<Vector3>
{
public:
    Region3(float x1, float y1, float z1, float x2, float y2, float z2)
        : Region(Vector3(x1, y1, z1), Vector3(x2, y2, z2))
    {
    }
};

} // namespace ZR::Corvale::Type
