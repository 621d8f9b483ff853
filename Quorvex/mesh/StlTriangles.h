#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/mesh/MeshData.h>

// What the STL readers share: the arrays that they fill and the box that they measure on the way.

namespace KOVA::Quorvex::stl {

// The box of points. An empty one is inside out; components that are no numbers count for nothing.
struct Bounds {
    Vector3f lower{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                   std::numeric_limits<float>::max()};
    Vector3f upper{std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                   std::numeric_limits<float>::lowest()};

    void Add(const Vector3f& point) { Add(point, point); }
    void Add(const Bounds& other) { Add(other.lower, other.upper); }

private:
    void Add(const Vector3f& low, const Vector3f& high) {
        lower.x = low.x < lower.x ? low.x : lower.x;
        lower.y = low.y < lower.y ? low.y : lower.y;
        lower.z = low.z < lower.z ? low.z : lower.z;
        upper.x = high.x > upper.x ? high.x : upper.x;
        upper.y = high.y > upper.y ? high.y : upper.y;
        upper.z = high.z > upper.z ? high.z : upper.z;
    }
};

// A mesh being read: triangle k is at 3k, 3k + 1, 3k + 2 of both arrays, which are not filled yet.
struct Triangles {
    std::unique_ptr<MeshData> data;
    Vector3f* normals = nullptr;
    Vector3f* vertices = nullptr;

    explicit operator bool() const { return data != nullptr; }
    std::size_t Count() const { return data->GetNumVertices() / 3; }
    void SetBounds(const Bounds& bounds) const;
};

// None when a mesh cannot count that many vertices. Throws std::bad_alloc.
Triangles AllocateTriangles(std::uint64_t count);

Bounds MeasureBounds(const Triangles& triangles);

// Unit normal of the triangle by its winding; zero when it has no area or a corner that is no number.
Vector3f TriangleNormal(const Vector3f& a, const Vector3f& b, const Vector3f& c);

// True for a normal that says nothing: zero, or with a component that is not finite.
bool IsBlankNormal(const Vector3f& normal);
bool IsFinite(const Vector3f& v);

} // namespace KOVA::Quorvex::stl
