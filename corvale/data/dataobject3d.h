#pragma once

#include "corvale/data/dataobject.h"
#include "corvale/data/dataregion3.h"

namespace ZR::Corvale::Type {

/// Something recognised in space.
/// Threads: thread-safe, as `Object`.
class Object3D : public Object<Region3>
{
public:
    explicit Object3D(boost::shared_ptr<Region3> region);
    /// The properties: "{ KEY = VALUE}" for each. Locks the object for its length, so a property must not
    /// lead back to it.
    std::string toString() override;
    ~Object3D() override;
};

} // namespace ZR::Corvale::Type
