#pragma once

#include <vector>

#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

// What the picture and the clip planes leave of space, to sort out boxes of which nothing can be seen.
class HalfSpaces {
public:
    // Keeps the side on which p.x*x + p.y*y + p.z*z + p.w >= 0.
    void Add(const Vector4d& plane) { m_planes.push_back(plane); }

    // The six sides of the view volume, in the coordinates that modelview takes. Both in OpenGL's element order.
    void AddViewVolume(const double* projection, const double* modelview);

    // True when the whole box lies clearly outside one of the half-spaces.
    bool Exclude(const Vector3f& low, const Vector3f& high) const;

private:
    std::vector<Vector4d> m_planes;
};

} // namespace KOVA::Quorvex
