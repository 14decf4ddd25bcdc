// The names and the text forms of values: the one source here that knows every payload.

#include "corvale/data/data.h"
#include "corvale/data/databinaryimage.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datahistogram.h"
#include "corvale/data/datahuman.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/datamatriximage.h"
#include "corvale/data/dataobject2d.h"
#include "corvale/data/dataobject3d.h"
#include "corvale/data/dataregion3.h"
#include "corvale/data/datavector4.h"
#include "corvale/data/datavector6.h"
#include "corvale/data/dataxyzimage.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <locale>
#include <ostream>
#include <sstream>

namespace ZR::Corvale {

namespace {

// By number.
constexpr std::array<const char*, 31> Names{
    "Invalid",    "Boolean",        "Integer",     "UnsignedInteger", "Float",      "Double",   "String",
    "ColorImage", "GrayscaleImage", "BinaryImage", "LabelImage",      "DepthImage", "XYZImage", "MatrixImage",
    "Histogram",  "AudioBuffer",    "Color",       "Vector2",         "Vector3",    "Vector4",  "Vector6",
    "Region2",    "Region3",        "Array",       "Human",           "Object2D",   "Object3D", "Time",
    "Duration",   "Unknown",        "Lambda"};

using Values = std::vector<boost::shared_ptr<Data>>;

template <typename Kind>
void writeImage(std::ostream& text, const char* word, const Kind& image)
{
    text << "{" << word << " Width=" << image.mat.cols << " Height=" << image.mat.rows
         << " Data=" << static_cast<const void*>(image.mat.data) << "}";
}

void write(std::ostream& text, bool value)
{
    text << (value ? "True" : "False");
}
void write(std::ostream& text, int value)
{
    text << value;
}
void write(std::ostream& text, unsigned int value)
{
    text << value;
}
void write(std::ostream& text, float value)
{
    text << value << "f";
}
void write(std::ostream& text, double value)
{
    text << value;
}
void write(std::ostream& text, const std::string& value)
{
    text << value;
}
void write(std::ostream& text, const Type::ColorImage& image)
{
    writeImage(text, "Image", image);
}
void write(std::ostream& text, const Type::BinaryImage& image)
{
    writeImage(text, "BinaryImage", image);
}
void write(std::ostream& text, const Type::GrayscaleImage& image)
{
    writeImage(text, "GrayscaleImage", image);
}
void write(std::ostream& text, const Type::LabelImage& image)
{
    writeImage(text, "LabelImage", image);
}
void write(std::ostream& text, const Type::DepthImage& image)
{
    writeImage(text, "DepthImage", image);
}
void write(std::ostream& text, const Type::XYZImage& image)
{
    writeImage(text, "XYZImage", image);
}
void write(std::ostream& text, const Type::MatrixImage& image)
{
    writeImage(text, "MatrixImage", image);
}

void write(std::ostream& text, const Type::Vector2& vector)
{
    text << "{X=" << vector.x() << " Y=" << vector.y() << "}";
}

void write(std::ostream& text, const Type::Vector3& vector)
{
    text << "{X=" << vector.x() << " Y=" << vector.y() << " Z=" << vector.z() << "}";
}

void write(std::ostream& text, const Type::Vector4& vector)
{
    text << "{X=" << vector.x() << " Y=" << vector.y() << " Z=" << vector.z() << " W=" << vector.w() << "}";
}

void write(std::ostream& text, const Type::Vector6& vector)
{
    text << "{X=" << vector.x() << " Y=" << vector.y() << " Z=" << vector.z() << " WX=" << vector.wx()
         << " WY=" << vector.wy() << " WZ=" << vector.wz() << "}";
}

void write(std::ostream& text, const Type::Region2& region)
{
    text << "{Start=[" << region.start.x() << "," << region.start.y() << "] "
         << "End=[" << region.end.x() << "," << region.end.y() << "]}";
}

// No separator between y and z: hosts know the text in this form.
void write(std::ostream& text, const Type::Region3& region)
{
    text << "{Start=[" << region.start.x() << "," << region.start.y() << region.start.z() << "] "
         << "End=[" << region.end.x() << "," << region.end.y() << region.end.z() << "]}";
}

void write(std::ostream& text, const Type::Histogram& histogram)
{
    text << "{Histogram Channels=" << histogram.getChannels() << " Size=" << histogram.getChannelSize()
         << "}";
}

void write(std::ostream& text, const Type::Human& human)
{
    text << "{Human Id=" << human.getId() << " Name=" << human.getName() << "}";
}

void write(std::ostream& text, Type::Object2D& object)
{
    text << "{Object2D " << object.toString() << "}";
}
void write(std::ostream& text, Type::Object3D& object)
{
    text << "{Object3D " << object.toString() << "}";
}

void write(std::ostream& text, const Type::Time& time)
{
    text << "{Time second=" << time.getTotalSeconds() << "}";
}

void write(std::ostream& text, const Type::Duration& span)
{
    text << "{Duration Milliseconds=" << span.getTotalMilliseconds() << "}";
}

void write(std::ostream& text, const Values& values)
{
    text << "{";
    const char* separator = "";
    for (const boost::shared_ptr<Data>& value : values) {
        text << separator << (value ? value->toString() : "NULL");
        separator = ";";
    }
    text << "}";
}

template <typename Payload>
void writeAs(std::ostream& text, void* payload)
{
    write(text, *static_cast<Payload*>(payload));
}

void writePayload(std::ostream& text, DataType type, void* payload)
{
    switch (type) {
    case Boolean:
        return writeAs<bool>(text, payload);
    case Integer:
        return writeAs<int>(text, payload);
    case UnsignedInteger:
        return writeAs<unsigned int>(text, payload);
    case Float:
        return writeAs<float>(text, payload);
    case Double:
        return writeAs<double>(text, payload);
    case String:
        return writeAs<std::string>(text, payload);
    case ColorImage:
        return writeAs<Type::ColorImage>(text, payload);
    case GrayscaleImage:
        return writeAs<Type::GrayscaleImage>(text, payload);
    case BinaryImage:
        return writeAs<Type::BinaryImage>(text, payload);
    case LabelImage:
        return writeAs<Type::LabelImage>(text, payload);
    case DepthImage:
        return writeAs<Type::DepthImage>(text, payload);
    case XYZImage:
        return writeAs<Type::XYZImage>(text, payload);
    case MatrixImage:
        return writeAs<Type::MatrixImage>(text, payload);
    case Histogram:
        return writeAs<Type::Histogram>(text, payload);
    case Vector2:
        return writeAs<Type::Vector2>(text, payload);
    case Vector3:
        return writeAs<Type::Vector3>(text, payload);
    case Vector4:
        return writeAs<Type::Vector4>(text, payload);
    case Vector6:
        return writeAs<Type::Vector6>(text, payload);
    case Region2:
        return writeAs<Type::Region2>(text, payload);
    case Region3:
        return writeAs<Type::Region3>(text, payload);
    case Array:
        return writeAs<Values>(text, payload);
    case Human:
        return writeAs<Type::Human>(text, payload);
    case Object2D:
        return writeAs<Type::Object2D>(text, payload);
    case Object3D:
        return writeAs<Type::Object3D>(text, payload);
    case Time:
        return writeAs<Type::Time>(text, payload);
    case Duration:
        return writeAs<Type::Duration>(text, payload);
    default:
        text << "{void*}";
    }
}

} // namespace

std::string Data::toString()
{
    if (!_data)
        return {};
    std::ostringstream text;
    text.imbue(std::locale::classic()); // the same text whatever locale the host sets
    writePayload(text, _type, _data.get());
    return text.str();
}

std::string Data::getTypeName(DataType type)
{
    const auto number = static_cast<std::size_t>(type);
    return number < Names.size() ? Names[number] : Names[Invalid];
}

DataType Data::getTypeFromName(const std::string& name)
{
    const auto found = std::find(Names.begin(), Names.end(), name);
    return found == Names.end() ? Invalid : static_cast<DataType>(found - Names.begin());
}

} // namespace ZR::Corvale
