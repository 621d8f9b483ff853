#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

// 4 x 4 matrix of doubles in OpenGL's element order (column-major): row r, column c at index c * 4 + r, the
// translation at 12, 13, 14. It acts on column vectors. The default constructor leaves it uninitialised.
//
// operator*= multiplies on the right (as glMultMatrixd does); Rotate, Scale and Translate multiply on the left, so
// each of them applies after everything that is already in the matrix.
class QUORVEX_API Matrix44d {
public:
    Matrix44d() = default;

    void SetIdentity();

    // axis is used as given: one that is not of unit length gives a matrix that is not orthonormal. angle in radians.
    void Rotate(Vector3f axis, float angle);
    void Scale(const Vector3f& s);
    void Translate(const Vector3f& t);

    void operator*=(const Matrix44d& m);

    // Transforms the point (p, 1) in double precision and divides by w; w = 0 gives infinities or NaN.
    Vector3f operator*(const Vector3f& p) const;

    operator double*() { return m_elements; }
    operator const double*() const { return m_elements; }

private:
    double m_elements[16];
};

} // namespace KOVA::Quorvex
