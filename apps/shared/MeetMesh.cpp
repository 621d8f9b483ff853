#include "MeetMesh.h"

#include <limits>

#include <Quorvex/mesh/MeshData.h>

namespace KOVA::Quorvex::apps {

namespace {

// By the volumes that ray and edges span. Infinity where they do not meet.
double MeetTriangle(const Ray& ray, const Vector3d& a, const Vector3d& b, const Vector3d& c) {
    constexpr double nowhere = std::numeric_limits<double>::infinity();
    const Vector3d ab = b - a;
    const Vector3d ac = c - a;
    const Vector3d normal = Cross(ray.direction, ac);
    const double determinant = Dot(ab, normal);
    if (determinant == 0.0) {
        return nowhere;
    }
    const Vector3d start = ray.origin - a;
    const double u = Dot(start, normal) / determinant;
    const Vector3d across = Cross(start, ab);
    const double v = Dot(ray.direction, across) / determinant;
    const double t = Dot(ac, across) / determinant;
    const bool meets = u >= 0.0 && v >= 0.0 && u + v <= 1.0 && t >= 0.0;
    return meets ? t : nowhere; // NOLINT(cppcoreguidelines-narrowing-conversions): both are double
}

} // namespace

std::optional<double> MeetTriangles(const MeshData& data, const Ray& ray) {
    const Vector3f* const vertices = data.GetVertexArray();
    const unsigned int* const indices = data.GetIndexArray();
    const unsigned int corners = indices != nullptr ? data.GetNumIndices() : data.GetNumVertices();
    if (vertices == nullptr) {
        return std::nullopt;
    }
    const auto corner = [vertices, indices](unsigned int i) {
        return Vector3d(vertices[indices != nullptr ? indices[i] : i]);
    };
    double nearest = std::numeric_limits<double>::infinity();
    for (unsigned int i = 0; i + 2 < corners; i += 3) {
        const double t = MeetTriangle(ray, corner(i), corner(i + 1), corner(i + 2));
        nearest = t < nearest ? t : nearest;
    }
    return nearest < std::numeric_limits<double>::infinity() ? std::optional(nearest) : std::nullopt;
}

std::optional<double> NearestVertex(const MeshData& data, const Ray& ray) {
    const double squared = Dot(ray.direction, ray.direction);
    double narrowest = std::numeric_limits<double>::infinity();
    std::optional<double> found;
    const Vector3f* const vertices = data.GetVertexArray();
    for (unsigned int i = 0; vertices != nullptr && i < data.GetNumVertices(); ++i) {
        const Vector3d way = Vector3d(vertices[i]) - ray.origin;
        const double t = Dot(way, ray.direction) / squared;
        const Vector3d beside = way - ray.direction * t;
        const double slope = t > 0.0 ? Dot(beside, beside) / (t * t) : std::numeric_limits<double>::infinity();
        if (slope < narrowest) {
            narrowest = slope;
            found = t;
        }
    }
    return found;
}

} // namespace KOVA::Quorvex::apps
