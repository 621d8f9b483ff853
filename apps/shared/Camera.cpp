#include "Camera.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <Quorvex/view/View.h>

namespace KOVA::Quorvex::apps {

namespace {

using Vec = std::array<double, 3>;

double Dot(const Vec& a, const Vec& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec Cross(const Vec& a, const Vec& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vec Unit(const Vec& v) {
    const double length = std::sqrt(Dot(v, v));
    return {v[0] / length, v[1] / length, v[2] / length};
}

// Ranges that a set of numbers spans.
struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void Include(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double Extent() const { return high - low; }
};

Vec Plus(const Vec& a, const Vec& b, double factor) {
    return {a[0] + b[0] * factor, a[1] + b[1] * factor, a[2] + b[2] * factor};
}

std::array<Vec, 8> CornersOf(const Box& box) {
    std::array<Vec, 8> corners;
    for (unsigned int i = 0; i < 8; ++i) {
        for (unsigned int axis = 0; axis < 3; ++axis) {
            corners[i][axis] = ((i >> axis) & 1U) != 0 ? box.high[axis] : box.low[axis];
        }
    }
    return corners;
}

// The corners of polygons around the circles on which a point turns: nothing of the circle is outside.
void AddTurned(const Vec& point, const Vec& axis, std::vector<Vec>& points) {
    constexpr int sides = 72;
    const double outside = 1.0 / std::cos(std::numbers::pi / sides);
    const Vec foot = Plus({0, 0, 0}, axis, Dot(point, axis));
    const Vec arm = Plus(point, foot, -1.0);
    const Vec across = Cross(axis, arm);
    for (int i = 0; i < sides; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / sides;
        points.push_back(Plus(Plus(foot, arm, outside * std::cos(angle)), across, outside * std::sin(angle)));
    }
}

// What has to be seen, relative to what the camera looks at and along its axes.
std::vector<Vec> PointsAlong(const Axes& axes, const Box& box, const Vec& center, const Shot& shot) {
    std::vector<Vec> points;
    for (const Vec& corner : CornersOf(box)) {
        if (shot.turnAxis) {
            AddTurned(corner, *shot.turnAxis, points);
        } else {
            points.push_back(corner);
        }
    }
    for (Vec& point : points) {
        const Vec p = Plus(point, center, -1.0);
        point = {Dot(p, axes.right), Dot(p, axes.up), Dot(p, axes.back)};
    }
    return points;
}

// Where the eye has to be along one direction of the picture: the sideways shift that makes both sides touch, and the
// distance at which they do. A corner at x, and z nearer to the eye, is inside when |x - shift| * slope <= distance -
// z.
struct Placement {
    double shift, distance;
};

Placement Place(const std::vector<Vec>& corners, std::size_t direction, double slope) {
    Range plus;
    Range minus;
    for (const Vec& c : corners) {
        plus.Include(c[2] + slope * c[direction]);
        minus.Include(c[2] - slope * c[direction]);
    }
    return {(plus.high - minus.high) / (2.0 * slope), (plus.high + minus.high) / 2.0};
}

Vector3f ToFloat(const Vec& v) {
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

Vec Along(const Vec& start, const Axes& axes, const Vec& amounts) {
    Vec p = start;
    for (std::size_t i = 0; i < 3; ++i) {
        p[i] += axes.right[i] * amounts[0] + axes.up[i] * amounts[1] + axes.back[i] * amounts[2];
    }
    return p;
}

} // namespace

Box Box::Empty() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return {{infinity, infinity, infinity}, {-infinity, -infinity, -infinity}};
}

void Box::Include(const Box& other) {
    for (std::size_t i = 0; i < 3; ++i) {
        low[i] = std::min(low[i], other.low[i]);
        high[i] = std::max(high[i], other.high[i]);
    }
}

bool Box::IsFinite() const {
    const auto finite = [](double v) { return std::isfinite(v); };
    return std::all_of(low.begin(), low.end(), finite) && std::all_of(high.begin(), high.end(), finite);
}

std::array<double, 3> Box::Center() const {
    return {(low[0] + high[0]) / 2, (low[1] + high[1]) / 2, (low[2] + high[2]) / 2};
}

double Box::Radius() const {
    const Vec diagonal{high[0] - low[0], high[1] - low[1], high[2] - low[2]};
    return std::sqrt(Dot(diagonal, diagonal)) / 2;
}

Box Box::Scaled(double factor) const {
    Box box = *this;
    for (std::size_t i = 0; i < 3; ++i) {
        box.low[i] *= factor;
        box.high[i] *= factor;
    }
    return box;
}

Box Box::Enlarged(double fraction) const {
    Box box = *this;
    for (std::size_t i = 0; i < 3; ++i) {
        const double growth = (high[i] - low[i]) * fraction;
        box.low[i] -= growth;
        box.high[i] += growth;
    }
    return box;
}

Axes AxesOf(Side side) {
    Vec back{0, 0, 1};
    Vec up{0, 1, 0};
    switch (side) {
    case Side::Front:
        break;
    case Side::Back:
        back = {0, 0, -1};
        break;
    case Side::Right:
        back = {1, 0, 0};
        break;
    case Side::Left:
        back = {-1, 0, 0};
        break;
    case Side::Top:
        back = {0, 1, 0};
        up = {0, 0, -1};
        break;
    case Side::Bottom:
        back = {0, -1, 0};
        up = {0, 0, 1};
        break;
    case Side::Iso:
        back = Unit({1, 1, 1});
        break;
    }
    const Vec right = Unit(Cross(up, back));
    return {right, Cross(back, right), back};
}

Camera FitCamera(const Box& box, const Shot& shot) {
    return FitCamera(box, shot, AxesOf(shot.side));
}

Camera FitCamera(const Box& box, const Shot& shot, const Axes& axes) {
    Vec center = box.Center();
    if (shot.turnAxis) {
        center = Plus({0, 0, 0}, *shot.turnAxis, Dot(center, *shot.turnAxis));
    }
    const std::vector<Vec> corners = PointsAlong(axes, box, center, shot);
    const double radius = box.Radius() > 0.0 ? box.Radius() : 1.0;

    Range depth;
    for (const Vec& c : corners) {
        depth.Include(c[2]);
    }

    Camera camera{};
    camera.projection = shot.projection;
    camera.aspect = shot.aspect;
    camera.fov = shot.fovDegrees * std::numbers::pi / 180.0;
    double distance = 2.0 * radius;
    Vec shift{0, 0, 0};
    if (shot.projection == Projection::Perspective) {
        const double slope = c_margin / std::tan(camera.fov / 2);
        const Placement across = Place(corners, 0, slope);
        const Placement upright = Place(corners, 1, slope * shot.aspect);
        // What is seen exactly from its end has no width: keep off it.
        distance = std::max({across.distance, upright.distance, depth.high + 0.1 * radius});
        shift = {across.shift, upright.shift, 0.0};
    } else {
        double need = 0.0;
        for (const Vec& c : corners) {
            need = std::max({need, std::abs(c[0]), shot.aspect * std::abs(c[1])});
        }
        camera.halfExtent = c_margin * (need > 0.0 ? need : radius);
    }

    const Vec target = Along(center, axes, shift);
    camera.target = ToFloat(target);
    camera.eye = ToFloat(Along(target, axes, {0, 0, distance}));
    camera.up = ToFloat(axes.up);

    // Close around the scene, so that the depth buffer's steps are fine, but never on its surface.
    const double nearest = distance - depth.high;
    const double gap = 0.05 * radius;
    camera.nearPlane = std::max(nearest - gap, nearest / 2);
    camera.farPlane = distance - depth.low + gap;
    return camera;
}

Vector3f TowardsViewer(const View& view) {
    return view.IsLeftHand() ? -view.getZVector() : view.getZVector();
}

void LoadProjection(const Camera& camera, View& view) {
    if (camera.projection == Projection::Perspective) {
        view.SetProjectionPerspectiveRH(static_cast<float>(camera.fov), static_cast<float>(camera.nearPlane),
                                        static_cast<float>(camera.farPlane));
    } else {
        // The view's numbers say what is seen, by which labels are sized; its matrix is one of a square, because the
        // frame multiplies the aspect ratio in.
        const double halfWidth = camera.halfExtent;
        const double halfHeight = halfWidth / camera.aspect;
        view.SetProjectionOrthogonalRH(-halfWidth, halfWidth, -halfHeight, halfHeight, camera.nearPlane,
                                       camera.farPlane);
        std::array<double, 16> square{};
        std::copy_n(view.GetProjectionMatrix(), square.size(), square.begin());
        square[5] = square[0];
        view.SetProjectionMatrix(square.data());
    }
}

void Load(const Camera& camera, View& view) {
    LoadProjection(camera, view);
    view.SetModelviewViewer(camera.eye, camera.target, camera.up);
}

} // namespace KOVA::Quorvex::apps
