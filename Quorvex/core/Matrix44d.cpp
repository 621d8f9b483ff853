#include <Quorvex/core/Matrix44d.h>

#include <cmath>

namespace KOVA::Quorvex {

void Matrix44d::SetIdentity() {
    for (int i = 0; i < 16; ++i) {
        m_elements[i] = i % 5 == 0 ? 1.0 : 0.0;
    }
}

// Rodrigues' rotation formula, R = cI + s[a]x + (1 - c) a aT.
void Matrix44d::Rotate(Vector3f axis, float angle) {
    const double x = axis.x;
    const double y = axis.y;
    const double z = axis.z;
    const double c = std::cos(static_cast<double>(angle));
    const double s = std::sin(static_cast<double>(angle));
    const double k = 1.0 - c;

    Matrix44d rotation;
    rotation.SetIdentity();
    double* r = rotation.m_elements;
    r[0] = x * x * k + c;
    r[1] = x * y * k + z * s;
    r[2] = x * z * k - y * s;
    r[4] = x * y * k - z * s;
    r[5] = y * y * k + c;
    r[6] = y * z * k + x * s;
    r[8] = x * z * k + y * s;
    r[9] = y * z * k - x * s;
    r[10] = z * z * k + c;
    rotation *= *this;
    *this = rotation;
}

void Matrix44d::Scale(const Vector3f& s) {
    for (int column = 0; column < 16; column += 4) {
        m_elements[column] *= s.x;
        m_elements[column + 1] *= s.y;
        m_elements[column + 2] *= s.z;
    }
}

void Matrix44d::Translate(const Vector3f& t) {
    for (int column = 0; column < 16; column += 4) {
        const double w = m_elements[column + 3];
        m_elements[column] += t.x * w;
        m_elements[column + 1] += t.y * w;
        m_elements[column + 2] += t.z * w;
    }
}

void Matrix44d::operator*=(const Matrix44d& m) {
    Matrix44d product;
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row) {
            double sum = 0.0;
            for (int i = 0; i < 4; ++i) {
                sum += m_elements[i * 4 + row] * m.m_elements[column * 4 + i];
            }
            product.m_elements[column * 4 + row] = sum;
        }
    }
    *this = product;
}

Vector3f Matrix44d::operator*(const Vector3f& p) const {
    const double* m = m_elements;
    const double w = m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15];
    return {static_cast<float>((m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12]) / w),
            static_cast<float>((m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13]) / w),
            static_cast<float>((m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]) / w)};
}

} // namespace KOVA::Quorvex
