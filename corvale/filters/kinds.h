#pragma once

#include "corvale/data/databinaryimage.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/datatype.h"
#include "corvale/data/dataxyzimage.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace ZR::Corvale {
class Port;
}

namespace ZR::Corvale::Filters {

/// The types that a port accepts, in the order in which it lists them.
using Kinds = std::vector<DataType>;

/// Declares what a port accepts.
void accept(const boost::shared_ptr<Port>& port, const Kinds& kinds);

/// Stands for a class in the call of a visitor.
template <typename Image>
struct ImageClass
{
    using type = Image;
};

/// Calls `visitor(ImageClass<...>())` with the class that holds images of a kind. False, and no call, if
/// filters take no images of that kind.
template <typename Visitor>
bool visitImageClass(DataType kind, Visitor&& visitor)
{
    switch (kind) {
    case DataType::ColorImage:
        visitor(ImageClass<Type::ColorImage>());
        return true;
    case DataType::GrayscaleImage:
        visitor(ImageClass<Type::GrayscaleImage>());
        return true;
    case DataType::BinaryImage:
        visitor(ImageClass<Type::BinaryImage>());
        return true;
    case DataType::LabelImage:
        visitor(ImageClass<Type::LabelImage>());
        return true;
    case DataType::DepthImage:
        visitor(ImageClass<Type::DepthImage>());
        return true;
    case DataType::XYZImage:
        visitor(ImageClass<Type::XYZImage>());
        return true;
    default:
        return false;
    }
}

} // namespace ZR::Corvale::Filters
