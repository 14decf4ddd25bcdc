#pragma once

namespace ZR::Corvale::Type {

/// Three linear and three angular components: a pose, a velocity, a wrench.
///
/// Arithmetic goes component by component, multiplication and division too, in plain IEEE floats: a
/// division by zero gives an infinity or no number, and a vector with a component that is not a number
/// differs from itself.
/// Threads: a plain value; one thread at a time, or several that read.
class Vector6
{
public:
    Vector6(float x, float y, float z, float wx, float wy, float wz)
        : _x(x),
          _y(y),
          _z(z),
          _wx(wx),
          _wy(wy),
          _wz(wz)
    {
    }

    float x() const { return _x; }
    float y() const { return _y; }
    float z() const { return _z; }
    float wx() const { return _wx; }
    float wy() const { return _wy; }
    float wz() const { return _wz; }
    float& x() { return _x; }
    float& y() { return _y; }
    float& z() { return _z; }
    float& wx() { return _wx; }
    float& wy() { return _wy; }
    float& wz() { return _wz; }

    float dot(const Vector6& other) const
    {
        return _x * other._x + _y * other._y + _z * other._z + _wx * other._wx + _wy * other._wy +
               _wz * other._wz;
    }

    bool operator==(const Vector6& other) const
    {
        return _x == other._x && _y == other._y && _z == other._z && _wx == other._wx && _wy == other._wy &&
               _wz == other._wz;
    }

    Vector6 operator+(const Vector6& other) const
    {
        return {_x + other._x,   _y + other._y,   _z + other._z,
                _wx + other._wx, _wy + other._wy, _wz + other._wz};
    }
    Vector6 operator-(const Vector6& other) const
    {
        return {_x - other._x,   _y - other._y,   _z - other._z,
                _wx - other._wx, _wy - other._wy, _wz - other._wz};
    }
    Vector6 operator*(const Vector6& other) const
    {
        return {_x * other._x,   _y * other._y,   _z * other._z,
                _wx * other._wx, _wy * other._wy, _wz * other._wz};
    }
    Vector6 operator/(const Vector6& other) const
    {
        return {_x / other._x,   _y / other._y,   _z / other._z,
                _wx / other._wx, _wy / other._wy, _wz / other._wz};
    }

    // The changed vector, as a copy.
    Vector6 operator+=(const Vector6& other) { return *this = *this + other; }
    Vector6 operator-=(const Vector6& other) { return *this = *this - other; }
    Vector6 operator*=(const Vector6& other) { return *this = *this * other; }
    Vector6 operator/=(const Vector6& other) { return *this = *this / other; }

private:
    float _x;
    float _y;
    float _z;
    float _wx;
    float _wy;
    float _wz;
};

} // namespace ZR::Corvale::Type
