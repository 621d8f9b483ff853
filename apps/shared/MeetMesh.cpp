#include "MeetMesh.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

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

// Corners of triangles, with indices or without.
class Corners {
public:
    explicit Corners(const MeshData& data)
        : m_vertices(data.GetVertexArray()), m_indices(data.GetIndexArray()),
          m_count(m_vertices == nullptr  ? 0
                  : m_indices != nullptr ? data.GetNumIndices()
                                         : data.GetNumVertices()) {}

    unsigned int Count() const { return m_count; }
    Vector3d operator[](unsigned int i) const { return Vector3d(m_vertices[m_indices != nullptr ? m_indices[i] : i]); }

private:
    const Vector3f* m_vertices;
    const unsigned int* m_indices;
    unsigned int m_count;
};

// Seen along a beam: x and y beside the ray, z the multiple of its direction.
class Sight {
public:
    explicit Sight(const Beam& beam) : m_beam(beam) {
        const Vector3d& d = beam.ray.direction;
        const Vector3d other = std::abs(d.x) > std::abs(d.y) ? Vector3d(0.0, 1.0, 0.0) : Vector3d(1.0, 0.0, 0.0);
        const Vector3d x = Cross(d, other);
        m_x = x * (1.0 / Length(x));
        m_y = Cross(d, m_x) * (1.0 / Length(d));
        m_z = d * (1.0 / Dot(d, d));
    }

    Vector3d Of(const Vector3d& point) const {
        const Vector3d way = point - m_beam.ray.origin;
        return {Dot(way, m_x), Dot(way, m_y), Dot(way, m_z)};
    }

    // Before the eye: x and y in radii of the beam, z that radius.
    Vector3d InPicture(const Vector3d& seen) const {
        const double radius = m_beam.RadiusAt(seen.z);
        return {seen.x / radius, seen.y / radius, radius};
    }

private:
    const Beam& m_beam;
    Vector3d m_x{0.0, 0.0, 0.0};
    Vector3d m_y{0.0, 0.0, 0.0};
    Vector3d m_z{0.0, 0.0, 0.0};
};

// Of what is offered to it.
class Nearest {
public:
    void Offer(double x, double y, double t) {
        const double beside = std::max(x * x + y * y, 1.0); // all of the beam is alike
        if (beside < m_beside || (beside == m_beside && t < m_t)) {
            m_beside = beside;
            m_t = t;
        }
    }

    std::optional<double> Get() const {
        return m_beside < std::numeric_limits<double>::infinity() ? std::optional(m_t) : std::nullopt;
    }

private:
    double m_beside = std::numeric_limits<double>::infinity();
    double m_t = 0.0;
};

// What of an edge lies behind the eye, or so near that it would be seen from everywhere, is left out.
void OfferEdge(const Sight& sight, Vector3d a, Vector3d b, Nearest& nearest) {
    constexpr double closest = 1e-6;
    if (a.z > b.z) {
        std::swap(a, b);
    }
    if (b.z <= 0.0) {
        return;
    }
    if (a.z < closest * b.z) {
        a = b + (a - b) * ((1.0 - closest) * b.z / (b.z - a.z));
    }
    const Vector3d from = sight.InPicture(a);
    const Vector3d to = sight.InPicture(b);
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double squared = dx * dx + dy * dy;
    const double share = squared > 0.0 ? std::clamp(-(from.x * dx + from.y * dy) / squared, 0.0, 1.0) : 0.0;
    const double along = share * from.z / (share * from.z + (1.0 - share) * to.z); // foreshortened
    nearest.Offer(from.x + share * dx, from.y + share * dy, a.z + along * (b.z - a.z));
}

} // namespace

std::optional<double> MeetTriangles(const MeshData& data, const Ray& ray) {
    const Corners corners(data);
    double nearest = std::numeric_limits<double>::infinity();
    for (unsigned int i = 0; i + 2 < corners.Count(); i += 3) {
        const double t = MeetTriangle(ray, corners[i], corners[i + 1], corners[i + 2]);
        nearest = t < nearest ? t : nearest;
    }
    return nearest < std::numeric_limits<double>::infinity() ? std::optional(nearest) : std::nullopt;
}

std::optional<double> NearestVertex(const MeshData& data, const Beam& beam) {
    const Sight sight(beam);
    const Vector3f* const vertices = data.GetVertexArray();
    Nearest nearest;
    for (unsigned int i = 0; vertices != nullptr && i < data.GetNumVertices(); ++i) {
        const Vector3d seen = sight.Of(Vector3d(vertices[i]));
        if (seen.z > 0.0) {
            const Vector3d place = sight.InPicture(seen);
            nearest.Offer(place.x, place.y, seen.z);
        }
    }
    return nearest.Get();
}

std::optional<double> NearestEdge(const MeshData& data, const Beam& beam) {
    const Sight sight(beam);
    const Corners corners(data);
    Nearest nearest;
    for (unsigned int i = 0; i + 2 < corners.Count(); i += 3) {
        const Vector3d a = sight.Of(corners[i]);
        const Vector3d b = sight.Of(corners[i + 1]);
        const Vector3d c = sight.Of(corners[i + 2]);
        OfferEdge(sight, a, b, nearest);
        OfferEdge(sight, b, c, nearest);
        OfferEdge(sight, c, a, nearest);
    }
    return nearest.Get();
}

} // namespace KOVA::Quorvex::apps
