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
#include "corvale/runtime/callstack.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <locale>
#include <ostream>
#include <sstream>

namespace ZR::Corvale {

namespace {

using Values = std::vector<boost::shared_ptr<Data>>;

void write(std::ostream& text, bool value)
{
    text << (value ? "True" : "False");
}

void write(std::ostream& text, float value)
{
    text << value << "f";
}

template <typename Value>
void write(std::ostream& text, const Value& value)
{
    text << value;
}

template <typename T, int C>
void writeImage(std::ostream& text, const char* word, const Type::Image<T, C>& image)
{
    text << "{" << word << " Width=" << image.mat.cols << " Height=" << image.mat.rows
         << " Data=" << static_cast<const void*>(image.mat.data) << "}";
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
        text << separator << (!value ? "NULL" : stackIsShort() ? "..." : value->toString());
        separator = ";";
    }
    text << "}";
}

// What a type is called, and how its payload is written.
struct Row
{
    const char* name;
    void (*write)(std::ostream& text, const char* name, void* payload);
};

template <typename Payload>
void writeAs(std::ostream& text, const char*, void* payload)
{
    write(text, *static_cast<Payload*>(payload));
}

template <typename Kind>
void writeImageAs(std::ostream& text, const char* name, void* payload)
{
    writeImage(text, name, *static_cast<Kind*>(payload));
}

void writeColorImage(std::ostream& text, const char*, void* payload)
{
    writeImage(text, "Image", *static_cast<Type::ColorImage*>(payload));
}

void writeUnknown(std::ostream& text, const char*, void*)
{
    text << "{void*}";
}

// By number.
constexpr std::array<Row, 31> Rows{{
    {"Invalid", writeUnknown},
    {"Boolean", writeAs<bool>},
    {"Integer", writeAs<int>},
    {"UnsignedInteger", writeAs<unsigned int>},
    {"Float", writeAs<float>},
    {"Double", writeAs<double>},
    {"String", writeAs<std::string>},
    {"ColorImage", writeColorImage},
    {"GrayscaleImage", writeImageAs<Type::GrayscaleImage>},
    {"BinaryImage", writeImageAs<Type::BinaryImage>},
    {"LabelImage", writeImageAs<Type::LabelImage>},
    {"DepthImage", writeImageAs<Type::DepthImage>},
    {"XYZImage", writeImageAs<Type::XYZImage>},
    {"MatrixImage", writeImageAs<Type::MatrixImage>},
    {"Histogram", writeAs<Type::Histogram>},
    {"AudioBuffer", writeUnknown},
    {"Color", writeUnknown},
    {"Vector2", writeAs<Type::Vector2>},
    {"Vector3", writeAs<Type::Vector3>},
    {"Vector4", writeAs<Type::Vector4>},
    {"Vector6", writeAs<Type::Vector6>},
    {"Region2", writeAs<Type::Region2>},
    {"Region3", writeAs<Type::Region3>},
    {"Array", writeAs<Values>},
    {"Human", writeAs<Type::Human>},
    {"Object2D", writeAs<Type::Object2D>},
    {"Object3D", writeAs<Type::Object3D>},
    {"Time", writeAs<Type::Time>},
    {"Duration", writeAs<Type::Duration>},
    {"Unknown", writeUnknown},
    {"Lambda", writeUnknown},
}};

} // namespace

std::string Data::toString()
{
    if (!_data)
        return {};
    std::ostringstream text;
    text.imbue(std::locale::classic()); // the same text whatever locale the host sets
    Rows[_type].write(text, Rows[_type].name, _data.get());
    return text.str();
}

std::string Data::getTypeName(DataType type)
{
    const auto number = static_cast<std::size_t>(type);
    return number < Rows.size() ? Rows[number].name : Rows[Invalid].name;
}

DataType Data::getTypeFromName(const std::string& name)
{
    const auto found =
        std::find_if(Rows.begin(), Rows.end(), [&name](const Row& row) { return row.name == name; });
    return found == Rows.end() ? Invalid : static_cast<DataType>(found - Rows.begin());
}

} // namespace ZR::Corvale
