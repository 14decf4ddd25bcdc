#pragma once

#include "corvale/data/dataregion.h"
#include "corvale/data/datavector2.h"

namespace ZR::Corvale::Type {

/// A rectangle, in pixels where it belongs to an image.
class Region2 : public Region<Vector2>
{
public:
    Region2(float x1, float y1, float x2, float y2) : Region(Vector2(x1, y1), Vector2(x2, y2)) {}
};

} // namespace ZR::Corvale::Type
