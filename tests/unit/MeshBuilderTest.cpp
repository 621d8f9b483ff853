#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshBuilder.h>

namespace KOVA::Quorvex {
namespace {

constexpr double s_pi = std::numbers::pi;

using Point = std::array<float, 3>;

Point At(const MeshData& data, unsigned int i) {
    const Vector3f v = data.GetVertex(i);
    return {v.x, v.y, v.z};
}

// Six times the volume of the tetrahedra between the origin and the triangles.
double EnclosedVolume(const MeshData& data) {
    double sum = 0.0;
    for (unsigned int i = 0; i < data.GetNumVertices(); i += 3) {
        const Point a = At(data, i);
        const Point b = At(data, i + 1);
        const Point c = At(data, i + 2);
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t l = (k + 1) % 3;
            const std::size_t m = (k + 2) % 3;
            sum += static_cast<double>(a[k]) * (static_cast<double>(b[l]) * c[m] - static_cast<double>(b[m]) * c[l]);
        }
    }
    return sum / 6.0;
}

// Every edge is run through as often in one direction as in the other, bit for bit: no gap, no triangle that is turned.
void ExpectClosed(const MeshData& data) {
    std::map<std::pair<Point, Point>, int> balance;
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        const Point from = At(data, i);
        const Point to = At(data, i % 3 == 2 ? i - 2 : i + 1);
        ++balance[{from, to}];
        --balance[{to, from}];
    }
    EXPECT_TRUE(std::all_of(balance.begin(), balance.end(), [](const auto& edge) { return edge.second == 0; }));
}

// Normals have unit length and lie on the side from which the triangle runs counter-clockwise.
void ExpectNormalsFollowTheWinding(const MeshData& data) {
    ASSERT_EQ(data.GetNumNormals(), data.GetNumVertices());
    for (unsigned int i = 0; i < data.GetNumVertices(); i += 3) {
        const Vector3f a = data.GetVertex(i);
        const Vector3f face = CrossProduct(data.GetVertex(i + 1) - a, data.GetVertex(i + 2) - a);
        for (unsigned int k = i; k < i + 3; ++k) {
            EXPECT_NEAR(Length(data.GetNormal(k)), 1.0F, 1e-5F) << "vertex " << k;
            EXPECT_GE(DotProduct(face, data.GetNormal(k)), 0.0F) << "vertex " << k;
        }
    }
}

void ExpectSolid(const Mesh& mesh, unsigned int vertices, double volume, double tolerance) {
    const MeshData& data = mesh.GetData();
    EXPECT_EQ(data.GetMode(), 4U);
    ASSERT_EQ(data.GetNumVertices(), vertices);
    EXPECT_EQ(data.GetNumIndices(), 0U);
    EXPECT_EQ(data.GetNumColors(), 0U);
    ExpectClosed(data);
    ExpectNormalsFollowTheWinding(data);
    EXPECT_NEAR(EnclosedVolume(data), volume, tolerance);
}

void ExpectMetrics(const Mesh& mesh, const Vector3f& low, const Vector3f& high, float radius) {
    EXPECT_EQ(mesh.GetBB0(), low);
    EXPECT_EQ(mesh.GetBB1(), high);
    EXPECT_NEAR(Length(mesh.GetCenter() - (low + high) * 0.5F), 0.0F, 1e-6F);
    EXPECT_FLOAT_EQ(mesh.GetRadius(), radius);
    EXPECT_EQ(mesh.GetData().GetBB0(), low);
    EXPECT_EQ(mesh.GetData().GetRadius(), mesh.GetRadius());
}

// The polyhedron of bands of 7.5 degrees on the unit sphere: an inscribed 48-gon prism between every two latitudes.
double UnitSphereVolume() {
    const double step = s_pi / 24.0;
    const double polygon = 24.0 * std::sin(step);
    double volume = 0.0;
    for (int i = -12; i < 12; ++i) {
        const double a = std::cos(i * step);
        const double b = std::cos((i + 1) * step);
        volume += polygon * (std::sin((i + 1) * step) - std::sin(i * step)) * (a * a + a * b + b * b) / 3.0;
    }
    return volume;
}

TEST(MeshBuilder, BoxIsASolidWithOneNormalAFace) {
    const Vector3f low(-1, 2, 3);
    const Vector3f high(1, 5, 7);
    const Mesh box = MeshBuilder::BuildBox(low, high);
    ExpectSolid(box, 36, 24.0, 1e-4);
    ExpectMetrics(box, low, high, 0.5F * std::sqrt(4.0F + 9.0F + 16.0F));
    for (unsigned int i = 0; i < 36; ++i) {
        const Vector3f normal = box.GetData().GetNormal(i);
        EXPECT_EQ(std::abs(normal.x) + std::abs(normal.y) + std::abs(normal.z), 1.0F);
        EXPECT_EQ(normal, box.GetData().GetNormal(i / 6 * 6));
    }
}

TEST(MeshBuilder, CrossIsThreeLinesWithoutMetrics) {
    const Mesh cross = MeshBuilder::BuildCross(Vector3f(1, 2, 3), 0.5F);
    const MeshData& data = cross.GetData();
    EXPECT_EQ(data.GetMode(), 1U);
    ASSERT_EQ(data.GetNumVertices(), 6U);
    EXPECT_EQ(data.GetNumNormals(), 0U);
    EXPECT_EQ(data.GetVertex(0), Vector3f(0.5F, 2, 3));
    EXPECT_EQ(data.GetVertex(1), Vector3f(1.5F, 2, 3));
    EXPECT_EQ(data.GetVertex(2), Vector3f(1, 1.5F, 3));
    EXPECT_EQ(data.GetVertex(3), Vector3f(1, 2.5F, 3));
    EXPECT_EQ(data.GetVertex(4), Vector3f(1, 2, 2.5F));
    EXPECT_EQ(data.GetVertex(5), Vector3f(1, 2, 3.5F));
    ExpectMetrics(cross, Vector3f(0, 0, 0), Vector3f(0, 0, 0), 0.0F);
}

TEST(MeshBuilder, SphereIsASolidOnTheSphere) {
    const Vector3f centre(1, -2, 0.5F);
    const Mesh sphere = MeshBuilder::BuildSphere(centre, 3.0F);
    ExpectSolid(sphere, 6624, 27.0 * UnitSphereVolume(), 1e-3);
    ExpectMetrics(sphere, Vector3f(-2, -5, -2.5F), Vector3f(4, 1, 3.5F), 3.0F);
    for (unsigned int i = 0; i < 6624; ++i) {
        const Vector3f direction = (sphere.GetData().GetVertex(i) - centre) / 3.0F;
        EXPECT_NEAR(Length(direction - sphere.GetData().GetNormal(i)), 0.0F, 1e-6F);
    }
    // The caps come first and last; longitudes start at +z.
    const MeshData& data = sphere.GetData();
    EXPECT_EQ(data.GetVertex(2), centre + Vector3f(0, 3, 0));
    EXPECT_EQ(data.GetNormal(0).x, 0.0F);
    EXPECT_NEAR(data.GetNormal(0).z, std::sin(s_pi / 24.0), 1e-6);
    EXPECT_NEAR(data.GetNormal(144).y, std::sin(-11.0 * s_pi / 24.0), 1e-6);
    EXPECT_EQ(data.GetNormal(6624 - 144).y, -1.0F);
}

TEST(MeshBuilder, EllipsoidIsAStretchedSphereWithItsOwnNormals) {
    const Vector3f centre(1, -2, 0.5F);
    const Vector3f radii(3.0F, 0.5F, 1.25F);
    const Mesh ellipsoid = MeshBuilder::BuildEllipsoid(centre, radii);
    ExpectSolid(ellipsoid, 6624, 3.0 * 0.5 * 1.25 * UnitSphereVolume(), 1e-4);
    ExpectMetrics(ellipsoid, centre - radii, centre + radii, Length(radii));
    for (unsigned int i = 0; i < 6624; ++i) { // the gradient of x^2/a^2 + y^2/b^2 + z^2/c^2
        const Vector3f d = ellipsoid.GetData().GetVertex(i) - centre;
        const Vector3f gradient(d.x / (radii.x * radii.x), d.y / (radii.y * radii.y), d.z / (radii.z * radii.z));
        EXPECT_NEAR(Length(Normalize(gradient) - ellipsoid.GetData().GetNormal(i)), 0.0F, 1e-5F);
    }

    const Mesh ball = MeshBuilder::BuildEllipsoid(centre, Vector3f(2, 2, 2));
    const Mesh sphere = MeshBuilder::BuildSphere(centre, 2.0F);
    for (unsigned int i = 0; i < 6624; ++i) {
        EXPECT_EQ(ball.GetData().GetVertex(i), sphere.GetData().GetVertex(i));
        EXPECT_NEAR(Length(ball.GetData().GetNormal(i) - sphere.GetData().GetNormal(i)), 0.0F, 1e-6F);
    }
    const Mesh tiny = MeshBuilder::BuildEllipsoid(Vector3f(0, 0, 0), Vector3f(1e-24F, 2e-24F, 1e-24F));
    const Mesh ordinary = MeshBuilder::BuildEllipsoid(Vector3f(0, 0, 0), Vector3f(1, 2, 1));
    for (unsigned int i = 0; i < 6624; ++i) {
        EXPECT_NEAR(Length(tiny.GetData().GetNormal(i) - ordinary.GetData().GetNormal(i)), 0.0F, 1e-6F);
    }
}

TEST(MeshBuilder, CylinderIsASolidWithCaps) {
    const Vector3f base(1, 2, 3);
    const Mesh cylinder = MeshBuilder::BuildEllipticCylinder(base, Vector2f(2, 1), Vector2f(2, 1), 5.0F);
    ExpectSolid(cylinder, 576, 24.0 * std::sin(s_pi / 24.0) * 2.0 * 5.0, 1e-3);
    ExpectMetrics(cylinder, Vector3f(-1, 1, 3), Vector3f(3, 3, 8), 0.5F * std::sqrt(16.0F + 4.0F + 25.0F));

    int capCorners = 0;
    for (unsigned int i = 0; i < 576; ++i) {
        const Vector3f normal = cylinder.GetData().GetNormal(i);
        if (normal.z != 0.0F) {
            EXPECT_EQ(normal.z, cylinder.GetData().GetVertex(i).z == base.z ? -1.0F : 1.0F);
            ++capCorners;
            continue;
        }
        const Vector3f d = cylinder.GetData().GetVertex(i) - base;
        EXPECT_NEAR(Length(Normalize(Vector3f(d.x / 4.0F, d.y, 0)) - normal), 0.0F, 1e-5F);
    }
    EXPECT_EQ(capCorners, 2 * 48 * 3);
}

TEST(MeshBuilder, ConesSlopeUpToThePoint) {
    // A frustum: volume h (A + sqrt(A a) + a) / 3.
    const double polygon = 24.0 * std::sin(s_pi / 24.0);
    const Mesh frustum = MeshBuilder::BuildEllipticCylinder(Vector3f(0, 0, -1), Vector2f(3, 3), Vector2f(1, 1), 2.0F);
    ExpectSolid(frustum, 576, polygon * 2.0 * (9.0 + 3.0 + 1.0) / 3.0, 1e-3);
    const Vector3f side = frustum.GetData().GetNormal(1); // at longitude 0, on +y
    EXPECT_NEAR(Length(side - Normalize(Vector3f(0, 2, 2))), 0.0F, 1e-6F);

    for (const bool pointAtTop : {true, false}) {
        const Vector2f wide(2, 1);
        const Vector2f point(0, 0);
        const Mesh cone = MeshBuilder::BuildEllipticCylinder(Vector3f(0, 0, 0), pointAtTop ? wide : point,
                                                             pointAtTop ? point : wide, 3.0F);
        ExpectSolid(cone, 576, polygon * 2.0 * 3.0 / 3.0, 1e-4);
        for (unsigned int i = 0; i < 576; i += 12) { // from the base to the top the slope is the same
            const float difference = Length(cone.GetData().GetNormal(i + 1) - cone.GetData().GetNormal(i + 2));
            EXPECT_NEAR(difference, 0.0F, 1e-6F);
        }
    }
    // Growing along one axis while it shrinks along the other.
    const Mesh twisted = MeshBuilder::BuildEllipticCylinder(Vector3f(0, 0, 0), Vector2f(2, 1), Vector2f(1, 2), 3.0F);
    ExpectClosed(twisted.GetData());
    ExpectNormalsFollowTheWinding(twisted.GetData());
}

TEST(MeshBuilder, TheMeshOwnsItsData) {
    const Mesh box = MeshBuilder::BuildBox(Vector3f(0, 0, 0), Vector3f(1, 1, 1));
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 2U);
    const Mesh copy(box);
    EXPECT_EQ(&copy.GetData(), &box.GetData());
}

} // namespace
} // namespace KOVA::Quorvex
