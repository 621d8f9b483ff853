#pragma once

#include <array>
#include <cstddef>

#include <Quorvex/core/Vectors.h>

// Marching cubes for voxels that are either inside or outside, with the level half-way between: vertices are the
// middles of cube edges, and the triangles of a cube depend on nothing but which of its corners are inside.

namespace KOVA::Quorvex::cubes {

// The triangles of one such case: corners relative to the cube's lowest corner, counter-clockwise from outside, and the
// normal of each corner. low and high are the box of the corners.
struct Case {
    static constexpr std::size_t most = 5;

    std::size_t triangles = 0;
    std::array<Vector3f, 3 * most> corners{};
    std::array<Vector3f, 3 * most> normals{};
    Vector3f low{0.0F, 0.0F, 0.0F};
    Vector3f high{0.0F, 0.0F, 0.0F};
};

// By the corners that are inside: those of the column at the cube's x in bits 0 to 3, those of the next column in bits
// 4 to 7. Within a column bit 0 is (y, z), bit 1 (y + 1, z), bit 2 (y, z + 1), bit 3 (y + 1, z + 1).
const std::array<Case, 256>& Cases();

} // namespace KOVA::Quorvex::cubes
