#pragma once

namespace ZR::Corvale::Type {

/// A colour: red, green and blue.
/// Threads: a plain value; one thread at a time, or several that read.
class Color
{
public:
    Color(float r, float g, float b) : _r(r), _g(g), _b(b) {}

    float r() const { return _r; }
    float g() const { return _g; }
    float b() const { return _b; }
    float& r() { return _r; }
    float& g() { return _g; }
    float& b() { return _b; }

private:
    float _r;
    float _g;
    float _b;
};

} // namespace ZR::Corvale::Type
