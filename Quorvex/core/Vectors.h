#pragma once

#include <cmath>

// Points, directions and tuples. Plain data: the components are the only members, in the order of their names, so
// that a pointer to the first component can be handed to OpenGL. Default constructors are trivial and leave the
// components uninitialised; equality is exact IEEE comparison (a NaN component makes == false and != true).

namespace KOVA::Quorvex {

class Vector2f {
public:
    float x, y;

    Vector2f() = default;
    constexpr Vector2f(float x, float y) : x(x), y(y) {}

    // Divides by the length; a zero vector becomes NaN.
    Vector2f& Normalize() {
        const float length = std::sqrt(x * x + y * y);
        x /= length;
        y /= length;
        return *this;
    }
};

class Vector3f {
public:
    float x, y, z;

    Vector3f() = default;
    constexpr Vector3f(float x, float y, float z) : x(x), y(y), z(z) {}
    explicit constexpr Vector3f(const float* v) : x(v[0]), y(v[1]), z(v[2]) {}

    constexpr void set(float newX, float newY, float newZ) { *this = Vector3f(newX, newY, newZ); }

    constexpr Vector3f& operator*=(float s) { return *this = *this * s; }
    constexpr Vector3f& operator/=(float s) { return *this = *this / s; }
    constexpr Vector3f& operator+=(const Vector3f& v) { return *this = *this + v; }
    constexpr Vector3f& operator-=(const Vector3f& v) { return *this = *this - v; }
    constexpr Vector3f operator*(float s) const { return {x * s, y * s, z * s}; }
    constexpr Vector3f operator/(float s) const { return {x / s, y / s, z / s}; }
    constexpr Vector3f operator+(const Vector3f& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3f operator-(const Vector3f& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3f operator-() const { return {-x, -y, -z}; }

    constexpr bool operator==(const Vector3f& v) const { return x == v.x && y == v.y && z == v.z; }
    constexpr bool operator!=(const Vector3f& v) const { return !(*this == v); }

    // True when at least one component equals the same component of v. Neither a dot product nor full equality.
    constexpr bool operator&(const Vector3f& v) const { return x == v.x || y == v.y || z == v.z; }

    operator float*() { return &x; }
    operator const float*() const { return &x; }

    float Length() const { return std::sqrt(x * x + y * y + z * z); }

    // Divides by the length; a zero vector becomes NaN.
    Vector3f& Normalize() { return *this /= Length(); }
};

class Vector4f {
public:
    float x, y, z, w;

    Vector4f() = default;
    constexpr Vector4f(float x, float y, float z, float w) : x(x), y(y), z(z), w(w) {}
    explicit constexpr Vector4f(const float* v) : x(v[0]), y(v[1]), z(v[2]), w(v[3]) {}

    constexpr void set(float newX, float newY, float newZ, float newW) { *this = Vector4f(newX, newY, newZ, newW); }

    constexpr Vector4f& operator*=(float s) { return *this = *this * s; }
    constexpr Vector4f& operator/=(float s) { return *this = *this / s; }
    constexpr Vector4f& operator+=(const Vector4f& v) { return *this = *this + v; }
    constexpr Vector4f& operator-=(const Vector4f& v) { return *this = *this - v; }
    constexpr Vector4f operator*(float s) const { return {x * s, y * s, z * s, w * s}; }
    constexpr Vector4f operator/(float s) const { return {x / s, y / s, z / s, w / s}; }
    constexpr Vector4f operator+(const Vector4f& v) const { return {x + v.x, y + v.y, z + v.z, w + v.w}; }
    constexpr Vector4f operator-(const Vector4f& v) const { return {x - v.x, y - v.y, z - v.z, w - v.w}; }
    constexpr Vector4f operator-() const { return {-x, -y, -z, -w}; }

    constexpr bool operator==(const Vector4f& v) const { return x == v.x && y == v.y && z == v.z && w == v.w; }
    constexpr bool operator!=(const Vector4f& v) const { return !(*this == v); }

    operator float*() { return &x; }
    operator const float*() const { return &x; }
};

// Voxel indices and dimensions.
class Vector3i {
public:
    int x, y, z;

    Vector3i() = default;
    constexpr Vector3i(int x, int y, int z) : x(x), y(y), z(z) {}
    explicit constexpr Vector3i(const int* v) : x(v[0]), y(v[1]), z(v[2]) {}

    constexpr void set(int newX, int newY, int newZ) { *this = Vector3i(newX, newY, newZ); }

    constexpr Vector3i& operator+=(const Vector3i& v) { return *this = *this + v; }
    constexpr Vector3i& operator-=(const Vector3i& v) { return *this = *this - v; }
    constexpr Vector3i operator+(const Vector3i& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3i operator-(const Vector3i& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3i operator-() const { return {-x, -y, -z}; }

    constexpr bool operator==(const Vector3i& v) const { return x == v.x && y == v.y && z == v.z; }
    constexpr bool operator!=(const Vector3i& v) const { return !(*this == v); }

    operator int*() { return &x; }
    operator const int*() const { return &x; }
};

// Clip planes and other double data.
class Vector4d {
public:
    double x, y, z, w;

    Vector4d() = default;
    constexpr Vector4d(double x, double y, double z, double w) : x(x), y(y), z(z), w(w) {}
    explicit constexpr Vector4d(const double* v) : x(v[0]), y(v[1]), z(v[2]), w(v[3]) {}

    constexpr void set(double newX, double newY, double newZ, double newW) { *this = Vector4d(newX, newY, newZ, newW); }

    constexpr Vector4d& operator+=(const Vector4d& v) { return *this = *this + v; }
    constexpr Vector4d& operator-=(const Vector4d& v) { return *this = *this - v; }
    constexpr Vector4d operator+(const Vector4d& v) const { return {x + v.x, y + v.y, z + v.z, w + v.w}; }
    constexpr Vector4d operator-(const Vector4d& v) const { return {x - v.x, y - v.y, z - v.z, w - v.w}; }
    constexpr Vector4d operator-() const { return {-x, -y, -z, -w}; }

    constexpr bool operator==(const Vector4d& v) const { return x == v.x && y == v.y && z == v.z && w == v.w; }
    constexpr bool operator!=(const Vector4d& v) const { return !(*this == v); }

    operator double*() { return &x; }
    operator const double*() const { return &x; }
};

inline float Length(const Vector3f& v) {
    return v.Length();
}

inline Vector3f Normalize(const Vector3f& v) {
    Vector3f result(v);
    return result.Normalize();
}

constexpr float DotProduct(const Vector3f& a, const Vector3f& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Vector3f CrossProduct(const Vector3f& a, const Vector3f& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Turns v by a degrees about y, then by b degrees about x, then by c degrees about z (right-handed,
// counter-clockwise for positive angles). Degrees are converted with the truncated value 3.14158 of pi.
inline Vector3f Rotate(const Vector3f& v, float a, float b, float c) {
    constexpr float truncatedPi = 3.14158F;
    a = a * truncatedPi / 180.0F;
    b = b * truncatedPi / 180.0F;
    c = c * truncatedPi / 180.0F;
    const float ca = std::cos(a);
    const float sa = std::sin(a);
    const float cb = std::cos(b);
    const float sb = std::sin(b);
    const float cg = std::cos(c);
    const float sg = std::sin(c);
    return {(ca * cg - sa * sb * sg) * v.x - cb * sg * v.y + (sb * sg * ca + sa * cg) * v.z,
            (sb * cg * sa + sg * ca) * v.x + cb * cg * v.y + (sa * sg - sb * cg * ca) * v.z,
            -cb * sa * v.x + sb * v.y + cb * ca * v.z};
}

} // namespace KOVA::Quorvex
