#pragma once

#include "corvale/data/datatype.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace ZR::Corvale {

namespace Type {
class ColorImage;
class GrayscaleImage;
class BinaryImage;
class LabelImage;
class DepthImage;
class XYZImage;
class MatrixImage;
class Histogram;
class AudioBuffer;
class Color;
class Vector2;
class Vector3;
class Vector4;
class Vector6;
class Region2;
class Region3;
class Human;
class Object2D;
class Object3D;
class Time;
class Duration;
class Lambda;
} // namespace Type

/// The value that travels through the engine: a type tag and a shared payload of that type.
///
/// A null `boost::shared_ptr<Data>` means that there is no value; a `Data` of type Invalid is an empty
/// value; a `Data` of a proper type may hold a null payload, when it was built from a null pointer.
/// Ownership: the constructors from a value keep a copy of their own (an array copies its element
/// pointers or takes over those of a temporary, a histogram copies its bins); the constructors from a
/// shared pointer share the caller's object.
/// Copies of a `Data` share their payload.
/// Threads: a `Data` never changes after construction, so several threads may read one. Its payload is
/// to be treated as immutable once others can see it.
/// Failure: none. A conversion to another type than the one held gives 0, false, an empty text, an
/// empty vector or a null pointer.
class Data
{
public:
    /// The empty value, of type Invalid.
    Data();

    Data(bool value);
    Data(int value);
    Data(unsigned int value);
    Data(float value);
    Data(double value);
    Data(const std::string& value);
    Data(const char* value);

    /// Vectors from their components.
    Data(float x, float y);
    Data(float x, float y, float z);
    Data(float x, float y, float z, float w);
    Data(float x, float y, float z, float wx, float wy, float wz);

    Data(const Type::Color& value);
    Data(const Type::Vector2& value);
    Data(const Type::Vector3& value);
    Data(const Type::Vector4& value);
    Data(const Type::Vector6& value);
    Data(const Type::Histogram& value);
    Data(const Type::Region2& value);
    Data(const Type::Region3& value);
    Data(const Type::Time& value);
    Data(const Type::Duration& value);
    Data(const std::vector<boost::shared_ptr<Data>>& value);
    Data(std::vector<boost::shared_ptr<Data>>&& value);

    Data(boost::shared_ptr<Type::ColorImage> value);
    Data(boost::shared_ptr<Type::GrayscaleImage> value);
    Data(boost::shared_ptr<Type::BinaryImage> value);
    Data(boost::shared_ptr<Type::LabelImage> value);
    Data(boost::shared_ptr<Type::DepthImage> value);
    Data(boost::shared_ptr<Type::XYZImage> value);
    Data(boost::shared_ptr<Type::MatrixImage> value);
    Data(boost::shared_ptr<Type::Histogram> value);
    Data(boost::shared_ptr<Type::AudioBuffer> value);
    Data(boost::shared_ptr<Type::Color> value);
    Data(boost::shared_ptr<Type::Vector2> value);
    Data(boost::shared_ptr<Type::Vector3> value);
    Data(boost::shared_ptr<Type::Vector4> value);
    Data(boost::shared_ptr<Type::Vector6> value);
    Data(boost::shared_ptr<Type::Region2> value);
    Data(boost::shared_ptr<Type::Region3> value);
    Data(boost::shared_ptr<Type::Human> value);
    Data(boost::shared_ptr<Type::Object2D> value);
    Data(boost::shared_ptr<Type::Object3D> value);
    Data(boost::shared_ptr<Type::Time> value);
    Data(boost::shared_ptr<Type::Duration> value);
    Data(boost::shared_ptr<Type::Lambda> value);
    /// Anything else, of type Unknown.
    Data(boost::shared_ptr<void> value);

    DataType getType() { return _type; }

    /// The payload, whatever its type; null if there is none.
    boost::shared_ptr<void> getRawData() { return _data; }

    /// A text for people; nothing reads it back. The empty text if there is no payload.
    std::string toString();

    /// The name of a type; "Invalid" for a number that is none.
    static std::string getTypeName(DataType type);
    /// The type of a name, compared exactly; Invalid for any other text.
    static DataType getTypeFromName(const std::string& name);

    // Only the types named at each line are accepted.
    operator void*() const { return _data.get(); }          // every type
    operator bool() const;                                  // Boolean
    operator int() const;                                   // Integer
    operator unsigned int() const;                          // UnsignedInteger
    operator float() const;                                 // Float, Integer, UnsignedInteger
    operator double() const;                                // Double, Float, Integer, UnsignedInteger
    operator std::string() const;                           // String, copied
    operator std::string*() const;                          // String, the payload itself
    operator std::vector<boost::shared_ptr<Data>>() const;  // Array, copied
    operator std::vector<boost::shared_ptr<Data>>*() const; // Array, the payload itself

    // The payload itself, which lives as long as this value or another holder of it; null on any other type.
    operator Type::ColorImage*() const;
    operator Type::GrayscaleImage*() const;
    operator Type::BinaryImage*() const;
    operator Type::LabelImage*() const;
    operator Type::DepthImage*() const;
    operator Type::XYZImage*() const;
    operator Type::MatrixImage*() const;
    operator Type::Histogram*() const;
    operator Type::AudioBuffer*() const;
    operator Type::Color*() const;
    operator Type::Vector2*() const;
    operator Type::Vector3*() const;
    operator Type::Vector4*() const;
    operator Type::Vector6*() const;
    operator Type::Region2*() const;
    operator Type::Region3*() const;
    operator Type::Human*() const;
    operator Type::Object2D*() const;
    operator Type::Object3D*() const;
    operator Type::Time*() const;
    operator Type::Duration*() const;
    operator Type::Lambda*() const;

private:
    boost::shared_ptr<void> _data;
    DataType _type;
    bool _valueConstructed; // read by nothing; tells a debugger how the payload came in
};

} // namespace ZR::Corvale
