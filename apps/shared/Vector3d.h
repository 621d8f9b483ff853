#pragma once

#include <array>
#include <cmath>

#include <Quorvex/core/Vectors.h>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// A point or direction with room for differences of large numbers.
struct Vector3d {
    double x, y, z;

    constexpr Vector3d(double x, double y, double z) : x(x), y(y), z(z) {}
    explicit constexpr Vector3d(const Vector3f& v) : x(v.x), y(v.y), z(v.z) {}
    explicit constexpr Vector3d(const std::array<double, 3>& v) : x(v[0]), y(v[1]), z(v[2]) {}

    constexpr Vector3d operator+(const Vector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3d operator-(const Vector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3d operator*(double s) const { return {x * s, y * s, z * s}; }

    Vector3f ToFloat() const { return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)}; }
};

constexpr double Dot(const Vector3d& a, const Vector3d& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Vector3d Cross(const Vector3d& a, const Vector3d& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double Length(const Vector3d& v) {
    return std::sqrt(Dot(v, v));
}

} // namespace KOVA::Quorvex::apps
