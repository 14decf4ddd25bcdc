#include "corvale/data/data.h"

#include "corvale/data/datacolor.h"
#include "corvale/data/dataduration.h"
#include "corvale/data/datahistogram.h"
#include "corvale/data/dataregion2.h"
#include "corvale/data/dataregion3.h"
#include "corvale/data/datatime.h"
#include "corvale/data/datavector2.h"
#include "corvale/data/datavector3.h"
#include "corvale/data/datavector4.h"
#include "corvale/data/datavector6.h"

#include <boost/make_shared.hpp>

#include <new>
#include <utility>

namespace ZR::Corvale {

using Values = std::vector<boost::shared_ptr<Data>>;

namespace {

// The elements of an array. Arrays one inside another end one after the other: by themselves they would end
// one inside another, and a row of 20,000 would fill the stack.
struct Elements : Values
{
    explicit Elements(Values values) : Values(std::move(values)) {}
    ~Elements()
    {
        Values ending;
        ending.swap(*this);
        while (!ending.empty()) {
            const boost::shared_ptr<Data> last = std::move(ending.back());
            ending.pop_back();
            Values* const inner = last.unique() ? static_cast<Values*>(*last) : nullptr;
            if (inner && last->getRawData().use_count() == 2) // this one, and the pointer that asks
                takeAll(*inner, ending);
        }
    }

private:
    static void takeAll(Values& from, Values& to)
    {
        try {
            to.insert(to.end(), from.begin(), from.end());
            from.clear();
        } catch (const std::bad_alloc&) { // then they end as they are
        }
    }
};

} // namespace

Data::Data() : _type(Invalid), _valueConstructed(false) {}

// By value: the payload is a copy.
#define CORVALE_DATA_OF(TAG, ARGUMENT, PAYLOAD)                                                              \
    Data::Data(ARGUMENT value)                                                                               \
        : _data(boost::make_shared<PAYLOAD>(value)),                                                         \
          _type(TAG),                                                                                        \
          _valueConstructed(true)                                                                            \
    {                                                                                                        \
    }

CORVALE_DATA_OF(Boolean, bool, bool)
CORVALE_DATA_OF(Integer, int, int)
CORVALE_DATA_OF(UnsignedInteger, unsigned int, unsigned int)
CORVALE_DATA_OF(Float, float, float)
CORVALE_DATA_OF(Double, double, double)
CORVALE_DATA_OF(String, const std::string&, std::string)
CORVALE_DATA_OF(Color, const Type::Color&, Type::Color)
CORVALE_DATA_OF(Vector2, const Type::Vector2&, Type::Vector2)
CORVALE_DATA_OF(Vector3, const Type::Vector3&, Type::Vector3)
CORVALE_DATA_OF(Vector4, const Type::Vector4&, Type::Vector4)
CORVALE_DATA_OF(Vector6, const Type::Vector6&, Type::Vector6)
CORVALE_DATA_OF(Region2, const Type::Region2&, Type::Region2)
CORVALE_DATA_OF(Region3, const Type::Region3&, Type::Region3)
CORVALE_DATA_OF(Time, const Type::Time&, Type::Time)
CORVALE_DATA_OF(Duration, const Type::Duration&, Type::Duration)

#undef CORVALE_DATA_OF

Data::Data(const Values& value) : Data(Values(value)) {}

Data::Data(Values&& value)
    : _data(boost::static_pointer_cast<Values>(boost::make_shared<Elements>(std::move(value)))),
      _type(Array),
      _valueConstructed(true)
{
}

Data::Data(const char* value) : Data(std::string(value ? value : "")) {}

Data::Data(float x, float y) : Data(Type::Vector2(x, y)) {}

Data::Data(float x, float y, float z) : Data(Type::Vector3(x, y, z)) {}

Data::Data(float x, float y, float z, float w) : Data(Type::Vector4(x, y, z, w)) {}

Data::Data(float x, float y, float z, float wx, float wy, float wz) : Data(Type::Vector6(x, y, z, wx, wy, wz))
{
}

Data::Data(const Type::Histogram& value)
    : _data(boost::make_shared<Type::Histogram>(const_cast<const float*>(value.getData()), value.getSize(),
                                                value.getChannels())),
      _type(Histogram),
      _valueConstructed(true)
{
}

Data::Data(boost::shared_ptr<void> value) : _data(std::move(value)), _type(Unknown), _valueConstructed(false)
{
}

namespace {

// The payload if it is of the type that is asked for.
template <typename Payload>
Payload* payload(const boost::shared_ptr<void>& data, DataType held, DataType wanted)
{
    return held == wanted ? static_cast<Payload*>(data.get()) : nullptr;
}

template <typename Value>
Value valueOf(const Value* value)
{
    return value ? *value : Value();
}

} // namespace

// From a shared pointer, and out again as a pointer. A payload may be incomplete here: its deleter comes
// with the shared pointer.
#define CORVALE_SHARED_DATA(KIND)                                                                            \
    Data::Data(boost::shared_ptr<Type::KIND> value)                                                          \
        : _data(std::move(value)),                                                                           \
          _type(KIND),                                                                                       \
          _valueConstructed(KIND == Vector6)                                                                 \
    {                                                                                                        \
    }                                                                                                        \
    Data::operator Type::KIND*() const                                                                       \
    {                                                                                                        \
        return payload<Type::KIND>(_data, _type, KIND);                                                      \
    }

CORVALE_SHARED_DATA(ColorImage)
CORVALE_SHARED_DATA(GrayscaleImage)
CORVALE_SHARED_DATA(BinaryImage)
CORVALE_SHARED_DATA(LabelImage)
CORVALE_SHARED_DATA(DepthImage)
CORVALE_SHARED_DATA(XYZImage)
CORVALE_SHARED_DATA(MatrixImage)
CORVALE_SHARED_DATA(Histogram)
CORVALE_SHARED_DATA(AudioBuffer)
CORVALE_SHARED_DATA(Color)
CORVALE_SHARED_DATA(Vector2)
CORVALE_SHARED_DATA(Vector3)
CORVALE_SHARED_DATA(Vector4)
CORVALE_SHARED_DATA(Vector6)
CORVALE_SHARED_DATA(Region2)
CORVALE_SHARED_DATA(Region3)
CORVALE_SHARED_DATA(Human)
CORVALE_SHARED_DATA(Object2D)
CORVALE_SHARED_DATA(Object3D)
CORVALE_SHARED_DATA(Time)
CORVALE_SHARED_DATA(Duration)
CORVALE_SHARED_DATA(Lambda)

#undef CORVALE_SHARED_DATA

Data::operator bool() const
{
    return valueOf(payload<bool>(_data, _type, Boolean));
}

Data::operator int() const
{
    return valueOf(payload<int>(_data, _type, Integer));
}

Data::operator unsigned int() const
{
    return valueOf(payload<unsigned int>(_data, _type, UnsignedInteger));
}

Data::operator float() const
{
    switch (_type) {
    case Float:
        return valueOf(payload<float>(_data, _type, Float));
    case Integer:
        return static_cast<float>(operator int());
    case UnsignedInteger:
        return static_cast<float>(operator unsigned int());
    default:
        return 0.0f;
    }
}

Data::operator double() const
{
    switch (_type) {
    case Double:
        return valueOf(payload<double>(_data, _type, Double));
    case Float:
        return operator float();
    case Integer:
        return operator int();
    case UnsignedInteger:
        return operator unsigned int();
    default:
        return 0.0;
    }
}

Data::operator std::string*() const
{
    return payload<std::string>(_data, _type, String);
}

Data::operator std::string() const
{
    return valueOf(operator std::string*());
}

Data::operator Values*() const
{
    return payload<Values>(_data, _type, Array);
}

Data::operator Values() const
{
    return valueOf(operator Values*());
}

} // namespace ZR::Corvale
