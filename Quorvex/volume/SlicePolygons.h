#pragma once

#include <cstdint>

#include <Quorvex/core/Vectors.h>

// The polygons in which planes cut axis-parallel boxes. No GL here.

namespace KOVA::Quorvex {

// Parallel planes: plane k, for every whole number k, holds the points with a*x + b*y + c*z + d = k.
struct PlaneStack {
    double a, b, c, d;

    double At(const Vector3f& p) const { return a * p.x + b * p.y + c * p.z + d; }
};

// The planes across the line of sight: plane k holds the points whose depth in eye space is k * spacing. modelview is
// rigid, in OpenGL's element order.
PlaneStack SlicesAcross(const double* modelview, double spacing);

constexpr int MAX_SLICE_POINTS = 6;

// One box under a stack of planes. What one plane cuts out of boxes that fill space fits together: neighbours agree on
// shared points to the bit, and a plane that runs along a shared face belongs to exactly one of them.
class BoxSlicer {
public:
    BoxSlicer(const PlaneStack& planes, const Vector3f& low, const Vector3f& high);

    // The planes that meet the box are First() to Last(); none when First() is above Last(), also for numbers that are
    // not finite or beyond what can be counted exactly.
    std::int64_t First() const { return m_first; }
    std::int64_t Last() const { return m_last; }

    // The convex polygon of plane k, its points in order around it. Returns their number: 3 to 6, or 0 when the plane
    // misses the box. Points may coincide where the plane runs through a corner or along an edge.
    int Cut(std::int64_t k, Vector3f* points) const;

private:
    Vector3f m_low;
    Vector3f m_high;
    std::int64_t m_first = 0;
    std::int64_t m_last = -1;
    double m_corners[8];   // place in the stack of corner x + 2y + 4z
    double m_scale[3];     // how far along an axis the next plane cuts the same edge
    double m_offset[3][4]; // where plane 0 cuts the four edge lines along an axis
};

// Area of a plane polygon in units of its coordinates.
double PolygonArea(const Vector3f* points, int count);

} // namespace KOVA::Quorvex
