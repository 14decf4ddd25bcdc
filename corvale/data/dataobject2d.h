#pragma once

#include "corvale/data/dataobject.h"
#include "corvale/data/dataregion2.h"

namespace ZR::Corvale::Type {

/// Something recognised in a picture.
/// Threads: thread-safe, as `Object`.
class Object2D : public Object<Region2>
{
public:
    explicit Object2D(boost::shared_ptr<Region2> region);
    /// The properties: "{ KEY = VALUE}" for each. Locks the object for its length, so a property must not
    /// lead back to it.
    std::string toString() override;
    ~Object2D() override;
};

} // namespace ZR::Corvale::Type
