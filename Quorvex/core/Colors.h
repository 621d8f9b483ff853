#pragma once

// Colours with components 0..1 by convention; nothing clamps them. Plain data, handed to OpenGL as a pointer to r.

namespace KOVA::Quorvex {

class ColorRGB {
public:
    float r, g, b;

    ColorRGB() = default;
    constexpr ColorRGB(float r, float g, float b) : r(r), g(g), b(b) {}
    ~ColorRGB() = default;
    ColorRGB(const ColorRGB&) = default;
    ColorRGB& operator=(const ColorRGB&) = default;

    constexpr ColorRGB& operator*=(float s) { return *this = *this * s; }
    constexpr ColorRGB& operator/=(float s) { return *this = *this / s; }
    constexpr ColorRGB& operator+=(const ColorRGB& c) { return *this = *this + c; }
    constexpr ColorRGB& operator-=(const ColorRGB& c) { return *this = *this - c; }
    constexpr ColorRGB operator*(float s) const { return {r * s, g * s, b * s}; }
    constexpr ColorRGB operator/(float s) const { return {r / s, g / s, b / s}; }
    constexpr ColorRGB operator+(const ColorRGB& c) const { return {r + c.r, g + c.g, b + c.b}; }
    constexpr ColorRGB operator-(const ColorRGB& c) const { return {r - c.r, g - c.g, b - c.b}; }

    constexpr bool operator==(const ColorRGB& c) const { return r == c.r && g == c.g && b == c.b; }
    constexpr bool operator!=(const ColorRGB& c) const { return !(*this == c); }

    operator float*() { return &r; }
    operator const float*() const { return &r; }
};

// a is the opacity. Scaling and adding act on r, g and b alone: mixing a colour never changes its opacity, and the
// binary operators take a from the left operand.
class ColorRGBA {
public:
    float r, g, b, a;

    ColorRGBA() = default;
    constexpr ColorRGBA(float r, float g, float b) : r(r), g(g), b(b), a(1.0F) {}
    constexpr ColorRGBA(float r, float g, float b, float a) : r(r), g(g), b(b), a(a) {}
    ~ColorRGBA() = default;
    ColorRGBA(const ColorRGBA&) = default;
    ColorRGBA& operator=(const ColorRGBA&) = default;

    constexpr ColorRGBA& operator*=(float s) { return *this = *this * s; }
    constexpr ColorRGBA& operator/=(float s) { return *this = *this / s; }
    constexpr ColorRGBA& operator+=(const ColorRGBA& c) { return *this = *this + c; }
    constexpr ColorRGBA& operator-=(const ColorRGBA& c) { return *this = *this - c; }
    constexpr ColorRGBA operator*(float s) const { return {r * s, g * s, b * s, a}; }
    constexpr ColorRGBA operator/(float s) const { return {r / s, g / s, b / s, a}; }
    constexpr ColorRGBA operator+(const ColorRGBA& c) const { return {r + c.r, g + c.g, b + c.b, a}; }
    constexpr ColorRGBA operator-(const ColorRGBA& c) const { return {r - c.r, g - c.g, b - c.b, a}; }

    constexpr bool operator==(const ColorRGBA& c) const { return r == c.r && g == c.g && b == c.b && a == c.a; }
    constexpr bool operator!=(const ColorRGBA& c) const { return !(*this == c); }

    operator float*() { return &r; }
    operator const float*() const { return &r; }
};

} // namespace KOVA::Quorvex
