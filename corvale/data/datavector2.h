#pragma once

namespace ZR::Corvale::Type {

/// A point or an extent in the plane.
///
/// Arithmetic goes component by component, multiplication and division too, in plain IEEE floats: a
/// division by zero gives an infinity or no number, and a vector with a component that is not a number
/// differs from itself.
/// Threads: a plain value; one thread at a time, or several that read.
class Vector2
{
public:
    Vector2(float x, float y) : _x(x), _y(y) {}

    float x() const { return _x; }
    float y() const { return _y; }
    float& x() { return _x; }
    float& y() { return _y; }

    float dot(const Vector2& other) const { return _x * other._x + _y * other._y; }

    bool operator==(const Vector2& other) const { return _x == other._x && _y == other._y; }

    Vector2 operator+(const Vector2& other) const { return {_x + other._x, _y + other._y}; }
    Vector2 operator-(const Vector2& other) const { return {_x - other._x, _y - other._y}; }
    Vector2 operator*(const Vector2& other) const { return {_x * other._x, _y * other._y}; }
    Vector2 operator/(const Vector2& other) const { return {_x / other._x, _y / other._y}; }

    // The changed vector, as a copy.
    Vector2 operator+=(const Vector2& other) { return *this = *this + other; }
    Vector2 operator-=(const Vector2& other) { return *this = *this - other; }
    Vector2 operator*=(const Vector2& other) { return *this = *this * other; }
    Vector2 operator/=(const Vector2& other) { return *this = *this / other; }

private:
    float _x;
    float _y;
};

} // namespace ZR::Corvale::Type
