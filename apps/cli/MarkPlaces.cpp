#include "MarkPlaces.h"

#include <algorithm>

#include "Camera.h"
#include "MeetMesh.h"

namespace KOVA::Quorvex::cli {

namespace {

// In radii of the scene. Less than what the camera leaves free in front of the scene.
constexpr double c_lift = 0.04;
constexpr double c_behindNearPlane = 0.01;

} // namespace

MarkPlaces::MarkPlaces(const View& view, const std::vector<Mesh*>& opaque, double scale, bool keepDepth)
    : m_view(view), m_opaque(opaque), m_scale(scale), m_keepDepth(keepDepth) {}

Vector3f MarkPlaces::OnSurface(const Position& mark) const {
    const Vector3f place(static_cast<float>(mark[0] * m_scale), static_cast<float>(mark[1] * m_scale),
                         static_cast<float>(mark[2] * m_scale));
    return place + Normalize(ToViewer(place)) * static_cast<float>(m_scale * c_lift);
}

bool MarkPlaces::IsSeen(const Position& mark) const {
    const Vector3f place = OnSurface(mark);
    const Ray ray{Vector3d(place) * (1.0 / m_scale), Vector3d(ToViewer(place))};
    return std::none_of(m_opaque.begin(), m_opaque.end(), [&ray](const Mesh* mesh) {
        return MeetTriangles(mesh->GetData(), ray).has_value(); // nothing lies behind the eye
    });
}

Vector3f MarkPlaces::InFront(const Position& mark) const {
    const Vector3f place = OnSurface(mark);
    const float depth = Depth(place);
    const double nearPlane =
        m_view.IsProjectionPerspective() ? double{m_view.getNear()} : m_view.GetProjectionOrthogonalNear();
    const auto front = static_cast<float>(nearPlane + m_scale * c_behindNearPlane);
    if (m_keepDepth || depth <= front) {
        return place;
    }
    const Vector3f way = ToViewer(place);
    return place + way * ((depth - front) / DotProduct(way, TowardsViewer(m_view)));
}

float MarkPlaces::LabelFactor(const Vector3f& place) const {
    return m_view.IsProjectionPerspective() ? 2.0F * Depth(place) / (m_view.getNear() + m_view.getFar()) : 1.0F;
}

Vector3f MarkPlaces::ToViewer(const Vector3f& place) const {
    return m_view.IsProjectionPerspective() ? m_view.getPosition() - place : TowardsViewer(m_view);
}

float MarkPlaces::Depth(const Vector3f& place) const {
    return DotProduct(m_view.getPosition() - place, TowardsViewer(m_view));
}

} // namespace KOVA::Quorvex::cli
