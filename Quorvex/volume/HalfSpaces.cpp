#include <Quorvex/volume/HalfSpaces.h>

#include <algorithm>
#include <cmath>

#include <Quorvex/core/Matrix44d.h>

namespace KOVA::Quorvex {

namespace {

// Boxes that only just miss are kept: the driver clips in single precision.
constexpr double s_tolerance = 1e-5;

} // namespace

void HalfSpaces::AddViewVolume(const double* projection, const double* modelview) {
    Matrix44d clip;
    Matrix44d view;
    std::copy_n(projection, 16, static_cast<double*>(clip));
    std::copy_n(modelview, 16, static_cast<double*>(view));
    clip *= view;
    const double* m = clip;
    for (int row = 0; row < 3; ++row) {
        for (const double sign : {1.0, -1.0}) {
            Add({m[3] + sign * m[row], m[7] + sign * m[4 + row], m[11] + sign * m[8 + row],
                 m[15] + sign * m[12 + row]});
        }
    }
}

bool HalfSpaces::Exclude(const Vector3f& low, const Vector3f& high) const {
    return std::any_of(m_planes.begin(), m_planes.end(), [&](const Vector4d& p) {
        // The corner that lies deepest in the half-space.
        const double deepest = std::max(p.x * low.x, p.x * high.x) + std::max(p.y * low.y, p.y * high.y) +
                               std::max(p.z * low.z, p.z * high.z) + p.w;
        return deepest < -s_tolerance * (std::abs(p.x) + std::abs(p.y) + std::abs(p.z) + std::abs(p.w));
    });
}

} // namespace KOVA::Quorvex
