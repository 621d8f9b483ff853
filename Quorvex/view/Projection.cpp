#include <Quorvex/view/View.h>

#include <algorithm>
#include <cmath>
#include <cstring>

// A perspective projection is computed in single precision from its arguments to its elements, which are only stored as
// doubles; an orthogonal one is double all the way.

namespace KOVA::Quorvex {

namespace {

constexpr float s_pi = 3.1415927F;

} // namespace

void View::SetProjectionPerspective(float fov, float nearPlane, float farPlane, bool leftHand) {
    m_perspective = true;
    m_orthogonal = false;
    m_fov = fov;
    m_nearPlane = nearPlane;
    m_farPlane = farPlane;
    m_leftHand = leftHand;

    const float f = 1.0F / std::tan(fov / 2.0F);
    const float d = 1.0F / (farPlane - nearPlane);
    const float depth = (nearPlane + farPlane) * d;

    std::fill_n(m_projection, 16, 0.0);
    m_projection[0] = f;
    m_projection[5] = f;
    m_projection[10] = leftHand ? depth : -depth;
    m_projection[11] = leftHand ? 1.0 : -1.0;
    m_projection[14] = -2.0F * nearPlane * farPlane * d;
}

void View::SetProjectionPerspectiveLH(float fov, float nearPlane, float farPlane) {
    SetProjectionPerspective(fov, nearPlane, farPlane, true);
}

void View::SetProjectionPerspectiveRH(float fov, float nearPlane, float farPlane) {
    SetProjectionPerspective(fov, nearPlane, farPlane, false);
}

void View::SetProjection(float fov, float nearPlane, float farPlane) {
    SetProjectionPerspective(fov, nearPlane, farPlane, true);
}

void View::SetProjectionR(float fov, float nearPlane, float farPlane) {
    SetProjectionPerspective(fov, nearPlane, farPlane, false);
}

void View::SetProjectionOrthogonal(double left, double right, double bottom, double top, double nearPlane,
                                   double farPlane, bool leftHand) {
    m_orthogonal = true;
    m_perspective = false;
    m_orthoLeft = left;
    m_orthoRight = right;
    m_orthoBottom = bottom;
    m_orthoTop = top;
    m_orthoNear = nearPlane;
    m_orthoFar = farPlane;
    m_leftHand = leftHand;

    std::fill_n(m_projection, 16, 0.0);
    m_projection[0] = 2.0 / (right - left);
    m_projection[5] = 2.0 / (top - bottom);
    m_projection[10] = (leftHand ? 2.0 : -2.0) / (farPlane - nearPlane);
    m_projection[12] = -(left + right) / (right - left);
    m_projection[13] = -(bottom + top) / (top - bottom);
    m_projection[14] = -(nearPlane + farPlane) / (farPlane - nearPlane);
    m_projection[15] = 1.0;
}

void View::SetProjectionOrthogonalLH(double left, double right, double bottom, double top, double nearPlane,
                                     double farPlane) {
    SetProjectionOrthogonal(left, right, bottom, top, nearPlane, farPlane, true);
}

void View::SetProjectionOrthogonalRH(double left, double right, double bottom, double top, double nearPlane,
                                     double farPlane) {
    SetProjectionOrthogonal(left, right, bottom, top, nearPlane, farPlane, false);
}

void View::SetProjectionMatrix(const double* m) {
    std::memmove(m_projection, m, sizeof(m_projection)); // m may be this view's own matrix
}

void View::setCamPlanes(float nearPlane, float farPlane) {
    SetProjectionPerspective(m_fov, nearPlane, farPlane, m_leftHand);
}

void View::getCamPlanes(float* nearPlane, float* farPlane) const {
    *nearPlane = m_nearPlane;
    *farPlane = m_farPlane;
}

void View::setFieldOfView(float degrees) {
    SetProjectionPerspective(degrees * s_pi / 180.0F, m_nearPlane, m_farPlane, m_leftHand);
}

float View::getFieldOfView() const {
    return m_fov * 180.0F / s_pi;
}

} // namespace KOVA::Quorvex
