#pragma once

namespace ZR::Corvale::Type {

/// A point or an extent in space.
///
/// Arithmetic goes component by component, multiplication and division too, in plain IEEE floats: a
/// division by zero gives an infinity or no number, and a vector with a component that is not a number
/// differs from itself.
/// Threads: a plain value; one thread at a time, or several that read.
class Vector3
{
public:
    Vector3(float x, float y, float z) : _x(x), _y(y), _z(z) {}

    float x() const { return _x; }
    float y() const { return _y; }
    float z() const { return _z; }
    float& x() { return _x; }
    float& y() { return _y; }
    float& z() { return _z; }

    float dot(const Vector3& other) const { return _x * other._x + _y * other._y + _z * other._z; }

    bool operator==(const Vector3& other) const { return _x == other._x && _y == other._y && _z == other._z; }

    Vector3 operator+(const Vector3& other) const { return {_x + other._x, _y + other._y, _z + other._z}; }
    Vector3 operator-(const Vector3& other) const { return {_x - other._x, _y - other._y, _z - other._z}; }
    Vector3 operator*(const Vector3& other) const { return {_x * other._x, _y * other._y, _z * other._z}; }
    Vector3 operator/(const Vector3& other) const { return {_x / other._x, _y / other._y, _z / other._z}; }

    // The changed vector, as a copy.
    Vector3 operator+=(const Vector3& other) { return *this = *this + other; }
    Vector3 operator-=(const Vector3& other) { return *this = *this - other; }
    Vector3 operator*=(const Vector3& other) { return *this = *this * other; }
    Vector3 operator/=(const Vector3& other) { return *this = *this / other; }

private:
    float _x;
    float _y;
    float _z;
};

} // namespace ZR::Corvale::Type
