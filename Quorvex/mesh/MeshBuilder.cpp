#include <Quorvex/mesh/MeshBuilder.h>

#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>

namespace KOVA::Quorvex {

namespace {

constexpr unsigned int s_lines = 1;     // GL_LINES
constexpr unsigned int s_triangles = 4; // GL_TRIANGLES

constexpr int s_segments = 48; // around the axis, 7.5 degrees each
constexpr int s_bands = 24;    // from pole to pole, of the same angle

struct SineCosine {
    float sine;
    float cosine;
};

// The last entry is the first one again, so that the seam is closed without a gap.
std::array<SineCosine, s_segments + 1> FullCircle() {
    std::array<SineCosine, s_segments + 1> circle{};
    for (std::size_t i = 0; i < s_segments; ++i) {
        const double angle = std::numbers::pi / 24.0 * static_cast<double>(i);
        circle[i] = {static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle))};
    }
    circle[s_segments] = circle[0];
    return circle;
}

// From the south pole to the north pole; each pole is one point.
std::array<SineCosine, s_bands + 1> Latitudes() {
    std::array<SineCosine, s_bands + 1> latitudes{};
    for (std::size_t i = 1; i < s_bands; ++i) {
        const double angle = std::numbers::pi / 24.0 * (static_cast<double>(i) - 12.0);
        latitudes[i] = {static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle))};
    }
    latitudes[0] = {-1.0F, 0.0F};
    latitudes[s_bands] = {1.0F, 0.0F};
    return latitudes;
}

// Fills the arrays of new mesh data from the front.
class Filler {
public:
    Filler(unsigned int vertexCount, unsigned int mode, bool normals)
        : m_data(std::make_unique<MeshData>(vertexCount, mode)) {
        m_data->CreateVertexArray(nullptr);
        if (normals) {
            m_data->CreateNormalArray(nullptr);
        }
    }

    void Add(const Vector3f& vertex) {
        m_data->SetVertex(m_next, vertex);
        ++m_next;
    }

    void Add(const Vector3f& vertex, const Vector3f& normal) {
        m_data->SetNormal(m_next, normal);
        Add(vertex);
    }

    MeshData& Data() { return *m_data; }

    // The mesh becomes the owner of the data.
    Mesh Finish() {
        Mesh mesh(*m_data);
        static_cast<void>(m_data.release());
        return mesh;
    }

private:
    std::unique_ptr<MeshData> m_data;
    unsigned int m_next = 0;
};

// Calls add(n) for the corners of the unit sphere's triangles: the north cap, the bands from south to north, the south
// cap.
template <class Add> void TessellateSphere(Add add) {
    const auto circle = FullCircle();
    const auto latitudes = Latitudes();
    const auto corner = [&](std::size_t latitude, std::size_t longitude) {
        const SineCosine phi = latitudes[latitude];
        const SineCosine theta = circle[longitude];
        add(Vector3f(theta.sine * phi.cosine, phi.sine, theta.cosine * phi.cosine));
    };

    for (std::size_t k = 0; k < s_segments; ++k) {
        corner(s_bands - 1, k);
        corner(s_bands - 1, k + 1);
        corner(s_bands, k + 1);
    }
    for (std::size_t i = 1; i < s_bands - 1; ++i) {
        for (std::size_t k = 0; k < s_segments; ++k) {
            corner(i, k);
            corner(i, k + 1);
            corner(i + 1, k + 1);
            corner(i, k);
            corner(i + 1, k + 1);
            corner(i + 1, k);
        }
    }
    for (std::size_t k = 0; k < s_segments; ++k) {
        corner(0, k);
        corner(1, k + 1);
        corner(1, k);
    }
}

Vector3f Scaled(const Vector3f& v, const Vector3f& factors) {
    return {v.x * factors.x, v.y * factors.y, v.z * factors.z};
}

void SetBounds(MeshData& data, const Vector3f& centre, const Vector3f& halfExtent, float radius) {
    data.SetBB0(centre - halfExtent);
    data.SetBB1(centre + halfExtent);
    data.SetCenter(centre);
    data.SetRadius(radius);
}

// In double precision, because products of short radii do not fit in a float.
Vector3f EllipsoidNormal(const Vector3f& n, const Vector3f& radii) {
    const double x = static_cast<double>(radii.y) * radii.z * n.x;
    const double y = static_cast<double>(radii.x) * radii.z * n.y;
    const double z = static_cast<double>(radii.x) * radii.y * n.z;
    const double length = std::sqrt(x * x + y * y + z * z);
    return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

// The side of a (truncated) elliptic cone along z. Its surface runs from the base (t = 0) to the top (t = 1).
struct ConeSide {
    Vector3f base;
    Vector2f radiiBase;
    Vector2f radiiTop;
    float length;

    Vector3f BasePoint(SineCosine theta) const {
        return {base.x + radiiBase.x * theta.sine, base.y + radiiBase.y * theta.cosine, base.z};
    }

    Vector3f TopPoint(SineCosine theta) const {
        return {base.x + radiiTop.x * theta.sine, base.y + radiiTop.y * theta.cosine, base.z + length};
    }

    // The surface's derivative along the axis times the one around it, at the end with the given radii. Where an end
    // has shrunk to a point the surface has no derivative around the axis: the other end's normal is the limit there.
    Vector3f Normal(SineCosine theta, bool top) const {
        const Vector4d here = Gradient(theta, top ? radiiTop : radiiBase);
        const Vector4d there = Gradient(theta, top ? radiiBase : radiiTop);
        const Vector4d& normal = here.w > 0.0 ? here : there;
        if (!(normal.w > 0.0)) {
            return {theta.sine, theta.cosine, 0.0F};
        }
        return {static_cast<float>(normal.x / normal.w), static_cast<float>(normal.y / normal.w),
                static_cast<float>(normal.z / normal.w)};
    }

private:
    // Its length is in w. In double precision, as the ellipsoid's normals.
    Vector4d Gradient(SineCosine theta, const Vector2f& radii) const {
        const double sine = theta.sine;
        const double cosine = theta.cosine;
        const double growthX = static_cast<double>(radiiTop.x) - radiiBase.x;
        const double growthY = static_cast<double>(radiiTop.y) - radiiBase.y;
        const double x = length * sine * radii.y;
        const double y = length * cosine * radii.x;
        const double z = -(growthX * radii.y * sine * sine + growthY * radii.x * cosine * cosine);
        return {x, y, z, std::sqrt(x * x + y * y + z * z)};
    }
};

} // namespace

Mesh MeshBuilder::BuildBox(const Vector3f& min, const Vector3f& max) {
    Filler filler(36, s_triangles, true);
    for (int axis = 0; axis < 3; ++axis) {
        const int u = (axis + 1) % 3;
        const int v = (axis + 2) % 3;
        for (const bool upper : {false, true}) {
            Vector3f normal(0.0F, 0.0F, 0.0F);
            normal[axis] = upper ? 1.0F : -1.0F;

            // Around the face as the axis sees it coming; the lower face is seen from behind and runs the other way.
            std::array<Vector3f, 4> corners;
            corners.fill(upper ? max : min);
            corners[0][u] = corners[3][u] = min[u];
            corners[1][u] = corners[2][u] = max[u];
            corners[0][v] = corners[1][v] = min[v];
            corners[2][v] = corners[3][v] = max[v];
            if (!upper) {
                std::swap(corners[1], corners[3]);
            }
            for (const std::size_t corner : {0U, 1U, 2U, 0U, 2U, 3U}) {
                filler.Add(corners[corner], normal);
            }
        }
    }

    MeshData& data = filler.Data();
    data.SetBB0(min);
    data.SetBB1(max);
    data.SetCenter((min + max) * 0.5F);
    data.SetRadius(0.5F * Length(max - min));
    return filler.Finish();
}

Mesh MeshBuilder::BuildCross(const Vector3f& centre, float size) {
    Filler filler(6, s_lines, false);
    for (int axis = 0; axis < 3; ++axis) {
        Vector3f arm(0.0F, 0.0F, 0.0F);
        arm[axis] = size;
        filler.Add(centre - arm);
        filler.Add(centre + arm);
    }
    return filler.Finish();
}

Mesh MeshBuilder::BuildSphere(const Vector3f& centre, float radius) {
    Filler filler(6624, s_triangles, true);
    TessellateSphere([&](const Vector3f& n) { filler.Add(centre + n * radius, n); });
    SetBounds(filler.Data(), centre, Vector3f(radius, radius, radius), radius);
    return filler.Finish();
}

Mesh MeshBuilder::BuildEllipsoid(const Vector3f& centre, const Vector3f& radii) {
    Filler filler(6624, s_triangles, true);
    TessellateSphere([&](const Vector3f& n) { filler.Add(centre + Scaled(n, radii), EllipsoidNormal(n, radii)); });
    SetBounds(filler.Data(), centre, radii, radii.Length());
    return filler.Finish();
}

Mesh MeshBuilder::BuildEllipticCylinder(const Vector3f& base, const Vector2f& radiiBase, const Vector2f& radiiTop,
                                        float length) {
    const ConeSide side{base, radiiBase, radiiTop, length};
    const Vector3f down(0.0F, 0.0F, -1.0F);
    const Vector3f up(0.0F, 0.0F, 1.0F);
    const Vector3f top(base.x, base.y, base.z + length);
    const auto circle = FullCircle();

    Filler filler(576, s_triangles, true);
    for (std::size_t k = 0; k < s_segments; ++k) {
        const SineCosine here = circle[k];
        const SineCosine next = circle[k + 1];

        filler.Add(side.BasePoint(next), side.Normal(next, false));
        filler.Add(side.BasePoint(here), side.Normal(here, false));
        filler.Add(side.TopPoint(here), side.Normal(here, true));

        filler.Add(side.BasePoint(next), side.Normal(next, false));
        filler.Add(side.TopPoint(here), side.Normal(here, true));
        filler.Add(side.TopPoint(next), side.Normal(next, true));

        filler.Add(base, down);
        filler.Add(side.BasePoint(here), down);
        filler.Add(side.BasePoint(next), down);

        filler.Add(top, up);
        filler.Add(side.TopPoint(next), up);
        filler.Add(side.TopPoint(here), up);
    }
    filler.Data().UpdateMetrics();
    return filler.Finish();
}

} // namespace KOVA::Quorvex
