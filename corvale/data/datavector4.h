#pragma once

namespace ZR::Corvale::Type {

/// Four numbers: a homogeneous point, a quaternion.
///
/// Arithmetic goes component by component, multiplication and division too, in plain IEEE floats: a
/// division by zero gives an infinity or no number, and a vector with a component that is not a number
/// differs from itself.
/// Threads: a plain value; one thread at a time, or several that read.
class Vector4
{
public:
    Vector4(float x, float y, float z, float w) : _x(x), _y(y), _z(z), _w(w) {}

    float x() const { return _x; }
    float y() const { return _y; }
    float z() const { return _z; }
    float w() const { return _w; }
    float& x() { return _x; }
    float& y() { return _y; }
    float& z() { return _z; }
    float& w() { return _w; }

    float dot(const Vector4& other) const
    {
        return _x * other._x + _y * other._y + _z * other._z + _w * other._w;
    }

    bool operator==(const Vector4& other) const
    {
        return _x == other._x && _y == other._y && _z == other._z && _w == other._w;
    }

    Vector4 operator+(const Vector4& other) const
    {
        return {_x + other._x, _y + other._y, _z + other._z, _w + other._w};
    }
    Vector4 operator-(const Vector4& other) const
    {
        return {_x - other._x, _y - other._y, _z - other._z, _w - other._w};
    }
    Vector4 operator*(const Vector4& other) const
    {
        return {_x * other._x, _y * other._y, _z * other._z, _w * other._w};
    }
    Vector4 operator/(const Vector4& other) const
    {
        return {_x / other._x, _y / other._y, _z / other._z, _w / other._w};
    }

    // The changed vector, as a copy.
    Vector4 operator+=(const Vector4& other) { return *this = *this + other; }
    Vector4 operator-=(const Vector4& other) { return *this = *this - other; }
    Vector4 operator*=(const Vector4& other) { return *this = *this * other; }
    Vector4 operator/=(const Vector4& other) { return *this = *this / other; }

private:
    float _x;
    float _y;
    float _z;
    float _w;
};

} // namespace ZR::Corvale::Type
