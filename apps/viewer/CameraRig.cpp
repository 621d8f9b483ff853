#include "CameraRig.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr double c_fovDegrees = 30.0; // across the width
constexpr double c_fov = c_fovDegrees * std::numbers::pi / 180.0;

// How far the planes keep off the scene, in its radii: bounding boxes stand out a little.
constexpr double c_spare = 0.1;

// The nearest near plane for a camera inside the scene, in shares of the far plane's distance: the depth buffer has 24
// bits.
constexpr double c_nearest = 1.0 / 2000.0;

// How much of the scene's radius the narrowest and the widest picture show.
constexpr double c_narrowest = 1e-4;
constexpr double c_widest = 1e3;

// Just behind the near plane, in its distances.
constexpr double c_foreground = 1.02;

constexpr Box c_emptyScene{{-1.0, -1.0, -1.0}, {1.0, 1.0, 1.0}};

double RadiusOf(const Box& box) {
    return box.Radius() > 0.0 ? box.Radius() : 1.0;
}

std::array<double, 3> ToArray(const Vector3f& v) {
    return {v.x, v.y, v.z};
}

} // namespace

CameraRig::CameraRig() : m_box(c_emptyScene) {
    Look(Side::Iso);
}

void CameraRig::SetScene(const Box& box) {
    m_box = box.IsFinite() ? box : c_emptyScene;
    Load(CurrentAxes());
}

void CameraRig::SetSize(int width, int height) {
    m_width = std::max(width, 1);
    m_height = std::max(height, 1);
    ShowWanted(CurrentAxes());
}

void CameraRig::Fit() {
    Fit(m_box, CurrentAxes());
}

void CameraRig::Look(Side side) {
    Fit(m_box, AxesOf(side));
}

void CameraRig::Fit(const Box& box, const Axes& axes) {
    Take(FitCamera(box, {Side::Iso, m_projection, c_fovDegrees, Aspect()}, axes));
    Load(axes);
    Want(ExtentOf(box));
    m_fitted = box;
}

// In the other direction of the picture there may be less of it one day than there is now.
void CameraRig::Want(const Extent& extent) {
    const double needed = std::max(extent.width, extent.height * Aspect());
    m_wanted = needed > 0.0 ? Extent{extent.width * m_halfWidth / needed, extent.height * m_halfWidth / needed}
                            : Extent{m_halfWidth, m_halfWidth / Aspect()};
}

void CameraRig::WantWhatIsSeen() {
    m_fitted.reset();
    const Extent scene = ExtentOf(m_box);
    if (scene.width <= m_halfWidth && scene.height * Aspect() <= m_halfWidth) {
        Want(scene);
    }
}

CameraRig::Extent CameraRig::ExtentOf(const Box& box) const {
    Extent extent{0.0, 0.0};
    for (unsigned int corner = 0; corner < 8; ++corner) {
        const auto along = [&](unsigned int axis) {
            return ((corner >> axis) & 1U) != 0 ? box.high[axis] : box.low[axis];
        };
        const auto pixel = PixelOf({along(0), along(1), along(2)});
        if (!pixel) { // behind the eye
            return {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
        }
        extent.width = std::max(extent.width, std::abs(2.0 * pixel->x / m_width - 1.0) * m_halfWidth);
        extent.height = std::max(extent.height, std::abs(2.0 * pixel->y / m_height - 1.0) * m_halfWidth / Aspect());
    }
    return extent;
}

// In perspective pictures the best distance and middle are others for every aspect ratio: they are looked for anew.
void CameraRig::ShowWanted(const Axes& axes) {
    if (m_fitted) {
        Fit(Box(*m_fitted), axes);
    } else {
        m_halfWidth = std::max(m_wanted.width, m_wanted.height * Aspect());
        Load(axes);
    }
}

void CameraRig::SetProjection(Projection projection) {
    if (projection != m_projection) {
        m_projection = projection;
        Load(CurrentAxes());
        WantWhatIsSeen();
    }
}

void CameraRig::Turn(int x0, int y0, int x1, int y1) {
    m_view.ApplyTrackball(x0, y0, x1, y1, m_width, m_height, m_pivot.ToFloat());
    m_view.Stabilize();
    Load(CurrentAxes());
    WantWhatIsSeen();
}

void CameraRig::Pan(double dx, double dy) {
    const Axes axes = CurrentAxes();
    const double step = 2.0 * m_halfWidth / m_width;
    m_pivot = m_pivot - Vector3d(axes.right) * (dx * step) + Vector3d(axes.up) * (dy * step);
    Load(axes);
    WantWhatIsSeen();
}

void CameraRig::Zoom(double factor, double x, double y) {
    const Axes axes = CurrentAxes();
    const double radius = RadiusOf(m_box);
    const double halfWidth = std::clamp(m_halfWidth / factor, c_narrowest * radius, c_widest * radius);
    const double change = halfWidth / m_halfWidth;
    m_pivot = m_pivot + (PlaceAt(x, y, axes) - m_pivot) * (1.0 - change);
    m_halfWidth = halfWidth;
    m_wanted = {m_wanted.width * change, m_wanted.height * change};
    Load(axes);
    WantWhatIsSeen();
}

void CameraRig::Follow(const CameraRig& other) {
    m_projection = other.m_projection;
    m_pivot = other.m_pivot;
    m_wanted = other.m_wanted;
    m_fitted = other.m_fitted;
    ShowWanted(other.CurrentAxes());
}

void CameraRig::ChangeUnit(const SceneUnit& before, const SceneUnit& after) {
    const double factor = before.unit / after.unit;
    const Vector3d shift = (Vector3d(before.middle) - Vector3d(after.middle)) * (1.0 / after.unit);
    const auto moved = [&](const Vector3d& point) { return point * factor + shift; };
    const auto movedBox = [&](const Box& box) {
        const Vector3d low = moved(Vector3d(box.low));
        const Vector3d high = moved(Vector3d(box.high));
        return Box{{low.x, low.y, low.z}, {high.x, high.y, high.z}};
    };
    m_box = movedBox(m_box);
    m_fitted = m_fitted ? std::optional(movedBox(*m_fitted)) : std::nullopt;
    m_pivot = moved(m_pivot);
    m_halfWidth *= factor;
    m_wanted = {m_wanted.width * factor, m_wanted.height * factor};
    Load(CurrentAxes());
}

Axes CameraRig::CurrentAxes() const {
    return {ToArray(m_view.getXVector()), ToArray(m_view.getYVector()), ToArray(m_view.getZVector())};
}

void CameraRig::Take(const Camera& camera) {
    m_pivot = Vector3d(camera.target);
    m_halfWidth = camera.projection == Projection::Perspective
                      ? Length(Vector3d(camera.eye) - m_pivot) * std::tan(camera.fov / 2)
                      : camera.halfExtent;
}

// The eye's distance follows from the width that is seen; where lines of sight are parallel it only has to be outside.
void CameraRig::Load(const Axes& axes) {
    const Vector3d back(axes.back);
    const Vector3d center(m_box.Center());
    const double radius = RadiusOf(m_box);
    const double toCenter = Dot(m_pivot - center, back); // of the pivot, towards the eye
    const bool perspective = m_projection == Projection::Perspective;
    const double distance =
        perspective ? m_halfWidth / std::tan(c_fov / 2) : std::max(radius * (1.0 + 2.0 * c_spare) - toCenter, radius);
    const double depth = distance + toCenter; // of the scene's middle
    m_farPlane = std::max(depth + radius * (1.0 + c_spare), radius * c_spare);
    m_nearPlane =
        std::max(depth - radius * (1.0 + c_spare), perspective ? m_farPlane * c_nearest : radius * c_spare / 2);

    const Vector3d eye = m_pivot + back * distance;
    LoadProjection({m_projection, eye.ToFloat(), m_pivot.ToFloat(), Vector3d(axes.up).ToFloat(), c_fov, m_halfWidth,
                    Aspect(), m_nearPlane, m_farPlane},
                   m_view);
    // Not by a point to look at: that may be too near for floats.
    const Vector3d right(axes.right);
    const Vector3d up(axes.up);
    double* const m = m_view.GetModelviewMatrix();
    const Vector3d rows[] = {right, up, back};
    for (int i = 0; i < 3; ++i) {
        m[i] = rows[i].x;
        m[4 + i] = rows[i].y;
        m[8 + i] = rows[i].z;
        m[12 + i] = -Dot(rows[i], eye);
        m[4 * i + 3] = 0.0;
    }
    m[15] = 1.0;
}

Vector3d CameraRig::PlaceAt(double x, double y, const Axes& axes) const {
    const double toRight = (2.0 * x / m_width - 1.0) * m_halfWidth;
    const double upwards = (1.0 - 2.0 * y / m_height) * m_halfWidth / Aspect();
    return m_pivot + Vector3d(axes.right) * toRight + Vector3d(axes.up) * upwards;
}

Ray CameraRig::RayAt(double x, double y) const {
    const Axes axes = CurrentAxes();
    const Vector3d place = PlaceAt(x, y, axes);
    const Vector3d back(axes.back);
    if (m_projection == Projection::Orthogonal) {
        return {place + back * (2.0 * m_farPlane), back * -1.0};
    }
    const Vector3d eye = m_pivot + back * (m_halfWidth / std::tan(c_fov / 2));
    const Vector3d way = place - eye;
    return {eye, way * (1.0 / Length(way))};
}

Beam CameraRig::BeamAt(int x, int y) const {
    const Ray ray = RayAt(x + 0.5, y + 0.5);
    const double radius = std::numbers::sqrt2 * m_halfWidth / m_width; // at the pivot
    if (m_projection == Projection::Orthogonal) {
        return {ray, radius, 0.0};
    }
    return {ray, 0.0, radius / Length(PlaceAt(x + 0.5, y + 0.5, CurrentAxes()) - ray.origin)};
}

std::optional<CameraRig::Pixel> CameraRig::PixelOf(const Vector3d& point) const {
    const Axes axes = CurrentAxes();
    const Vector3d way = point - m_pivot;
    double scale = 1.0 / m_halfWidth;
    if (m_projection == Projection::Perspective) {
        const double distance = m_halfWidth / std::tan(c_fov / 2);
        const double depth = distance - Dot(way, Vector3d(axes.back));
        if (depth <= 0.0) {
            return std::nullopt;
        }
        scale *= distance / depth;
    }
    return Pixel{(1.0 + Dot(way, Vector3d(axes.right)) * scale) * m_width / 2.0,
                 (1.0 - Dot(way, Vector3d(axes.up)) * scale * Aspect()) * m_height / 2.0};
}

std::optional<CameraRig::Foreground> CameraRig::InFront(const Vector3d& point) const {
    const Vector3d back(CurrentAxes().back);
    const Vector3d eye(m_view.getPosition());
    const double depth = Dot(eye - point, back);
    const double wanted = m_nearPlane * c_foreground;
    if (depth <= wanted) {
        return std::nullopt;
    }
    if (m_projection == Projection::Orthogonal) {
        return Foreground{(point + back * (depth - wanted)).ToFloat(), 1.0F};
    }
    return Foreground{(eye + (point - eye) * (wanted / depth)).ToFloat(),
                      static_cast<float>(2.0 * wanted / (m_nearPlane + m_farPlane))};
}

} // namespace KOVA::Quorvex::viewer
