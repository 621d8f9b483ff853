#include <Quorvex/volume/SlicePolygons.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace KOVA::Quorvex {
namespace {

using Point = std::array<double, 3>;

double Dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Point Cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Length(const Point& a) {
    return std::sqrt(Dot(a, a));
}

// The area of the part of plane k that is in the box, by clipping a huge square six times.
double AreaByClipping(const PlaneStack& p, double k, const Vector3f& low, const Vector3f& high) {
    const Point normal{p.a, p.b, p.c};
    const Point other = std::abs(p.a) < 0.6 * Length(normal) ? Point{1, 0, 0} : Point{0, 1, 0};
    Point u = Cross(normal, other);
    Point v = Cross(normal, u);
    std::vector<Point> polygon;
    for (const auto& [s, t] : {std::pair{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}) {
        Point corner{};
        for (std::size_t i = 0; i < 3; ++i) {
            corner[i] =
                normal[i] * (k - p.d) / Dot(normal, normal) + 100.0 * (s * u[i] / Length(u) + t * v[i] / Length(v));
        }
        polygon.push_back(corner);
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const double side : {1.0, -1.0}) {
            const auto limit =
                static_cast<double>(side > 0 ? high[static_cast<int>(axis)] : low[static_cast<int>(axis)]);
            std::vector<Point> kept;
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                const Point& a = polygon[i];
                const Point& b = polygon[(i + 1) % polygon.size()];
                const double da = side * (limit - a[axis]);
                const double db = side * (limit - b[axis]);
                if (da >= 0) {
                    kept.push_back(a);
                }
                if ((da >= 0) != (db >= 0)) {
                    const double t = da / (da - db);
                    kept.push_back({a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])});
                }
            }
            polygon = kept;
        }
    }
    Point sum{};
    for (std::size_t i = 2; i < polygon.size(); ++i) {
        const auto from = [&](const Point& q) {
            return Point{q[0] - polygon[0][0], q[1] - polygon[0][1], q[2] - polygon[0][2]};
        };
        const Point cross = Cross(from(polygon[i - 1]), from(polygon[i]));
        sum = {sum[0] + cross[0], sum[1] + cross[1], sum[2] + cross[2]};
    }
    return Length(sum) / 2.0;
}

class Random {
public:
    double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
    bool OneIn(unsigned int n) { return m_engine() % n == 0; }

    // Across any direction, also exactly along an axis or a diagonal, or nearly so.
    PlaneStack Planes() {
        double n[3];
        for (double& component : n) {
            component = OneIn(4) ? 0.0 : OneIn(3) ? (OneIn(2) ? 1.0 : -1.0) : OneIn(5) ? 1e-9 : Uniform(-1, 1);
        }
        if (n[0] == 0.0 && n[1] == 0.0 && n[2] == 0.0) {
            n[1] = 1.0;
        }
        const double density = Uniform(1, 40);
        return {n[0] * density, n[1] * density, n[2] * density, OneIn(2) ? 0.0 : Uniform(-50, 50)};
    }

private:
    std::mt19937 m_engine{7};
};

TEST(SlicePolygons, AgreeWithClipping) {
    Random random;
    int polygons = 0;
    for (int run = 0; run < 1000; ++run) {
        const PlaneStack planes = random.Planes();
        Vector3f low;
        Vector3f high;
        for (int axis = 0; axis < 3; ++axis) {
            static_cast<float*>(low)[axis] = static_cast<float>(random.OneIn(3) ? -1.0 : random.Uniform(-2, 1));
            static_cast<float*>(high)[axis] =
                static_cast<const float*>(low)[axis] + static_cast<float>(random.Uniform(0.1, 2));
        }
        const BoxSlicer box(planes, low, high);
        const double size = std::abs(planes.a) + std::abs(planes.b) + std::abs(planes.c);
        for (std::int64_t k = box.First() - 1; k <= box.Last() + 1; ++k) {
            std::array<Vector3f, MAX_SLICE_POINTS> points{};
            const int count = box.Cut(k, points.data());
            ASSERT_EQ(count >= 3, k >= box.First() && k <= box.Last()) << "run " << run << " plane " << k;
            ASSERT_NEAR(PolygonArea(points.data(), count),
                        count == 0 ? 0.0 : AreaByClipping(planes, static_cast<double>(k), low, high), 2e-5);
            polygons += count >= 3 ? 1 : 0;
            for (int i = 0; i < count; ++i) {
                const Vector3f& p = points[static_cast<std::size_t>(i)];
                ASSERT_NEAR(planes.At(p), static_cast<double>(k), 1e-6 * size);
                ASSERT_TRUE(p.x >= low.x && p.y >= low.y && p.z >= low.z && p.x <= high.x && p.y <= high.y &&
                            p.z <= high.z);
            }
        }
    }
    EXPECT_GT(polygons, 10000);
}

// Boxes that fill a cube: every plane is cut without a gap and without an overlap, and each inner edge of the polygons
// is there twice, the same to the bit (or once more there and back, where a plane runs along it).
TEST(SlicePolygons, NeighboursFitTogether) {
    Random random;
    for (int run = 0; run < 300; ++run) {
        const PlaneStack planes = random.Planes();
        const float inner = random.OneIn(2) ? 0.0F : static_cast<float>(random.Uniform(-0.8, 0.8));
        const float steps[] = {-1.0F, inner, 1.0F};
        const BoxSlicer whole(planes, {-1, -1, -1}, {1, 1, 1});
        for (std::int64_t k = whole.First(); k <= whole.Last(); ++k) {
            std::array<Vector3f, MAX_SLICE_POINTS> points{};
            const double area = PolygonArea(points.data(), whole.Cut(k, points.data()));
            double sum = 0.0;
            std::map<std::pair<std::array<float, 3>, std::array<float, 3>>, int> edges;
            for (int part = 0; part < 8; ++part) {
                const int x = part & 1;
                const int y = (part >> 1) & 1;
                const int z = part >> 2;
                const BoxSlicer box(planes, {steps[x], steps[y], steps[z]}, {steps[x + 1], steps[y + 1], steps[z + 1]});
                const int count = box.Cut(k, points.data());
                sum += PolygonArea(points.data(), count);
                for (int i = 0; i < count; ++i) {
                    const Vector3f& p = points[static_cast<std::size_t>(i)];
                    const Vector3f& q = points[static_cast<std::size_t>((i + 1) % count)];
                    std::array<float, 3> a{p.x, p.y, p.z};
                    std::array<float, 3> b{q.x, q.y, q.z};
                    bool outer = a == b;
                    for (std::size_t axis = 0; axis < 3; ++axis) {
                        outer = outer || (a[axis] == b[axis] && std::abs(a[axis]) == 1.0F);
                    }
                    if (!outer) {
                        ++edges[std::minmax(a, b)];
                    }
                }
            }
            ASSERT_NEAR(sum, area, 1e-5) << "run " << run << " plane " << k;
            for (const auto& [edge, uses] : edges) {
                ASSERT_EQ(uses % 2, 0) << "run " << run << " plane " << k;
            }
        }
    }
}

TEST(SlicePolygons, PlanesThatTouchOrCannotBeCounted) {
    std::array<Vector3f, MAX_SLICE_POINTS> points{};
    const auto slicer = [](double a, double b, double c, double d) {
        return BoxSlicer({a, b, c, d}, {0, 0, 0}, {1, 1, 1});
    };
    // A plane along a face belongs to the box on one side of it; one at a corner or an edge covers nothing.
    EXPECT_EQ(slicer(1, 0, 0, 0).Cut(0, points.data()), 0);
    EXPECT_EQ(slicer(1, 0, 0, 0).Cut(1, points.data()), 4);
    EXPECT_EQ(PolygonArea(points.data(), slicer(1, 1, 1, 0).Cut(3, points.data())), 0.0);
    EXPECT_EQ(PolygonArea(points.data(), slicer(1, 1, 0, 0).Cut(2, points.data())), 0.0);
    for (const double bad : {std::numeric_limits<double>::infinity(), std::nan(""), 1e300}) {
        const BoxSlicer box = slicer(1, bad, 0, 0);
        EXPECT_GT(box.First(), box.Last());
    }
    EXPECT_GT(slicer(0, 0, 0, 0.5).First(), slicer(0, 0, 0, 0.5).Last());
}

} // namespace
} // namespace KOVA::Quorvex
