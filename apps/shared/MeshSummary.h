#pragma once

#include <array>
#include <cstdint>

#include "Programs.h"

namespace KOVA::Quorvex {
class MeshData;
}

namespace KOVA::Quorvex::apps {

// What can be said about a triangle list without drawing it.
struct MeshSummary {
    std::uint64_t triangles = 0;
    std::uint64_t vertices = 0;            // as stored: three a triangle
    std::uint64_t degenerateTriangles = 0; // without an area: two corners agree, or all lie on a line
    std::uint64_t invertedNormals = 0;     // triangles whose normal looks away from the side that their corner order
                                           // (counter-clockwise from outside) says is the front
    // In the unit of the file. NaN without triangles.
    std::array<float, 3> low{}, high{}, size{}, center{};
    float radius = 0.0F; // half the diagonal of the box
};

MeshSummary Summarize(const MeshData& data);

} // namespace KOVA::Quorvex::apps
