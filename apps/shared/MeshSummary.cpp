#include "MeshSummary.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <Quorvex/mesh/MeshData.h>

namespace KOVA::Quorvex::apps {

namespace {

// In double precision: differences of neighbouring coordinates far from the origin keep all their digits, and the
// products of large ones do not overflow.
struct Direction {
    double x, y, z;

    double Dot(const Direction& v) const { return x * v.x + y * v.y + z * v.z; }
    Direction Cross(const Direction& v) const { return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x}; }
};

Direction Between(const Vector3f& from, const Vector3f& to) {
    return {static_cast<double>(to.x) - static_cast<double>(from.x),
            static_cast<double>(to.y) - static_cast<double>(from.y),
            static_cast<double>(to.z) - static_cast<double>(from.z)};
}

bool HasArea(const Direction& a, const Direction& b, const Direction& normal) {
    // What rounding leaves of the cross product of parallel edges lies far below this.
    constexpr double parallel = 1e-14;
    return normal.Dot(normal) > parallel * parallel * a.Dot(a) * b.Dot(b);
}

void CountTriangles(const MeshData& data, MeshSummary& summary) {
    const Vector3f* corner = data.GetVertexArray();
    const Vector3f* normals = data.GetNormalArray();
    for (std::uint64_t k = 0; k < summary.triangles; ++k, corner += 3) {
        const Direction a = Between(corner[0], corner[1]);
        const Direction b = Between(corner[0], corner[2]);
        const Direction front = a.Cross(b);
        if (!HasArea(a, b, front)) {
            ++summary.degenerateTriangles;
        } else if (normals != nullptr) {
            const Vector3f& n = normals[3 * k];
            const Direction stored{static_cast<double>(n.x), static_cast<double>(n.y), static_cast<double>(n.z)};
            summary.invertedNormals += front.Dot(stored) < 0.0 ? 1U : 0U;
        }
    }
}

void Measure(const MeshData& data, MeshSummary& summary) {
    const Vector3f* vertices = data.GetVertexArray();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        float low = std::numeric_limits<float>::infinity();
        float high = -low;
        for (std::uint64_t i = 0; i < summary.vertices; ++i) {
            const float value = static_cast<const float*>(vertices[i])[axis];
            low = std::min(low, value);
            high = std::max(high, value);
        }
        const double extent = static_cast<double>(high) - static_cast<double>(low);
        summary.low[axis] = low;
        summary.high[axis] = high;
        summary.size[axis] = static_cast<float>(extent);
        summary.center[axis] = static_cast<float>((static_cast<double>(high) + static_cast<double>(low)) / 2);
    }
    const auto square = [](float v) { return static_cast<double>(v) * static_cast<double>(v); };
    const double diagonal = std::sqrt(square(summary.size[0]) + square(summary.size[1]) + square(summary.size[2]));
    summary.radius = static_cast<float>(diagonal / 2);
}

} // namespace

MeshSummary Summarize(const MeshData& data) {
    MeshSummary summary;
    summary.vertices = data.GetNumVertices();
    summary.triangles = summary.vertices / 3;
    if (summary.vertices == 0 || data.GetVertexArray() == nullptr) {
        constexpr float nothing = std::numeric_limits<float>::quiet_NaN();
        summary.low = summary.high = summary.size = summary.center = {nothing, nothing, nothing};
        summary.radius = nothing;
        return summary;
    }
    CountTriangles(data, summary);
    Measure(data, summary);
    return summary;
}

} // namespace KOVA::Quorvex::apps
