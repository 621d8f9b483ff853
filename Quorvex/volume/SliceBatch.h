#pragma once

#include <array>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/volume/SlicePolygons.h>

namespace KOVA::Quorvex {

// Collects the polygons of many slices and draws them with one call, in the order in which they were added. The vertex
// array must be enabled, and no array or element buffer bound, whenever Draw runs. Large: not for small stacks.
class SliceBatch {
public:
    // The points of a convex polygon in order around it; fewer than 3 are nothing. IsFull() must be false.
    void Add(const Vector3f* points, int count);

    bool IsFull() const { return m_numPoints + MAX_SLICE_POINTS > MAX_POINTS; }
    bool IsEmpty() const { return m_numIndices == 0; }

    // Draws what was added and is empty again.
    void Draw();

private:
    static constexpr int MAX_POINTS = 2048;
    static constexpr int MAX_INDICES = MAX_POINTS * 3; // a polygon of n points is n - 2 triangles

    int m_numPoints = 0;
    int m_numIndices = 0;
    std::array<Vector3f, MAX_POINTS> m_points;
    std::array<unsigned short, MAX_INDICES> m_indices;
};

} // namespace KOVA::Quorvex
