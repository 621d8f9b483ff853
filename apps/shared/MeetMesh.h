#pragma once

#include <optional>

#include "Ray.h"

namespace KOVA::Quorvex {
class MeshData;
}

// A line of sight and a mesh, both in the mesh's coordinates. Every triangle is looked at: ten million take some tenths
// of a second, their edges up to one, and a mesh of which one point is wanted now and then needs no index.

namespace KOVA::Quorvex::apps {

// What is seen through a pixel: around the ray, as wide as its position says.
struct Beam {
    Ray ray;
    double radius; // at the ray's origin
    double growth; // for each multiple of the ray's direction

    double RadiusAt(double t) const { return radius + growth * t; }
};

// The first triangle of a triangle list that the ray meets, from either side, as a multiple of its direction. The order
// of corners takes no part.
std::optional<double> MeetTriangles(const MeshData& data, const Ray& ray);

// Abreast of the vertex, or of the point on an edge, that is nearest to the eye of those inside the beam; when there is
// none, of the one that is seen closest to it. Only what lies in front of the origin counts.
std::optional<double> NearestVertex(const MeshData& data, const Beam& beam);
std::optional<double> NearestEdge(const MeshData& data, const Beam& beam);

} // namespace KOVA::Quorvex::apps
