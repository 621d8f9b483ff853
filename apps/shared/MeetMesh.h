#pragma once

#include <optional>

#include "Ray.h"

namespace KOVA::Quorvex {
class MeshData;
}

// A line of sight and a mesh, both in the mesh's coordinates. Every triangle is looked at: ten million take a tenth of
// a second, and a mesh of which one point is wanted now and then needs no index.

namespace KOVA::Quorvex::apps {

// The first triangle of a triangle list that the ray meets, from either side, as a multiple of its direction. The order
// of corners takes no part.
std::optional<double> MeetTriangles(const MeshData& data, const Ray& ray);

// Abreast of the vertex in front of the origin that is seen closest to the ray.
std::optional<double> NearestVertex(const MeshData& data, const Ray& ray);

} // namespace KOVA::Quorvex::apps
