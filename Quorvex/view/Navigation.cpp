#include <Quorvex/view/View.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace KOVA::Quorvex {

namespace {

using Matrix = std::array<double, 16>;

// out = a * b; out may be a or b.
void Multiply(const double* a, const double* b, double* out) {
    Matrix product;
    for (std::size_t column = 0; column < 16; column += 4) {
        for (std::size_t row = 0; row < 4; ++row) {
            product[column + row] = a[row] * b[column] + a[4 + row] * b[column + 1] + a[8 + row] * b[column + 2] +
                                    a[12 + row] * b[column + 3];
        }
    }
    std::copy(product.begin(), product.end(), out);
}

Matrix Translation(double x, double y, double z) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

// By angle about the unit vector (x, y, z), counter-clockwise in right-handed coordinates, in the precision of T.
template <class T> Matrix Rotation(T x, T y, T z, T angle) {
    const T c = std::cos(angle);
    const T s = std::sin(angle);
    const T k = T(1) - c;
    return {x * x * k + c,
            x * y * k + z * s,
            x * z * k - y * s,
            0, //
            x * y * k - z * s,
            y * y * k + c,
            y * z * k + x * s,
            0, //
            x * z * k + y * s,
            y * z * k - x * s,
            z * z * k + c,
            0, //
            0,
            0,
            0,
            1};
}

// The same for an axis of any length, always in double precision: a view that turns for hours must not drift.
// Without an axis there is no rotation.
Matrix Rotation(const Vector4f& axisAngle, double sense) {
    const double x = axisAngle.x;
    const double y = axisAngle.y;
    const double z = axisAngle.z;
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0.0) {
        return Translation(0, 0, 0);
    }
    return Rotation(x / length, y / length, z / length, sense * axisAngle.w);
}

Vector3f Row(const double* m, int row) {
    return {static_cast<float>(m[row]), static_cast<float>(m[row + 4]), static_cast<float>(m[row + 8])};
}

void SetRow(double* m, int row, double x, double y, double z, const Vector3f& eye) {
    m[row] = x;
    m[row + 4] = y;
    m[row + 8] = z;
    m[row + 12] = -(x * eye.x + y * eye.y + z * eye.z);
}

void SetLastRow(double* m) {
    m[3] = m[7] = m[11] = 0.0;
    m[15] = 1.0;
}

void NormalizeElements(double& a, double& b, double& c) {
    const double length = std::sqrt(a * a + b * b + c * c);
    a /= length;
    b /= length;
    c /= length;
}

float Difference(int from, int to) {
    return static_cast<float>(static_cast<long long>(to) - from);
}

// Pixel to -1..1 across the window.
float Normalized(int pixel, int extent) {
    return 2.0F * static_cast<float>(pixel) / static_cast<float>(extent) - 1.0F;
}

// The rotation that a drag asks for, in single precision throughout. A drag across the whole width turns by 6.28.
Matrix TrackballRotation(const View& view, int x0, int y0, int x1, int y1, int width, int height) {
    Vector3f axis = view.getXVector() * Difference(y0, y1) + view.getYVector() * Difference(x0, x1);
    if (view.IsRightHand()) {
        axis = -axis;
    }
    axis.Normalize();

    const float dx = Normalized(x1, width) - Normalized(x0, width);
    const float dy = Normalized(y1, height) - Normalized(y0, height);
    const float angle = 3.14F * std::sqrt(dx * dx + dy * dy);
    return Rotation(axis.x, axis.y, axis.z, -angle);
}

} // namespace

void View::SetModelviewViewer(const Vector3f& eye, const Vector3f& centre, const Vector3f& up) {
    Vector3f depth = centre - eye;
    depth.Normalize();
    if (!m_leftHand) {
        depth = -depth;
    }
    const Vector3f side = Normalize(CrossProduct(up, depth));
    const Vector3f top = CrossProduct(depth, side);

    SetRow(m_modelview, 0, side.x, side.y, side.z, eye);
    SetRow(m_modelview, 1, top.x, top.y, top.z, eye);
    SetRow(m_modelview, 2, depth.x, depth.y, depth.z, eye);
    SetLastRow(m_modelview);
}

// Built from the angles and not by a look-at, so that straight up and straight down are directions like all others.
void View::SetModelviewViewer(const Vector3f& eye, float azimuth, float elevation) {
    const double sense = m_leftHand ? 1.0 : -1.0;
    const double ca = std::cos(static_cast<double>(azimuth));
    const double sa = std::sin(static_cast<double>(azimuth));
    const double ce = std::cos(static_cast<double>(elevation));
    const double se = std::sin(static_cast<double>(elevation));

    SetRow(m_modelview, 0, ca, 0.0, -sense * sa, eye);
    SetRow(m_modelview, 1, -sa * se, ce, -sense * ca * se, eye);
    SetRow(m_modelview, 2, sense * sa * ce, sense * se, ca * ce, eye);
    SetLastRow(m_modelview);
}

void View::SetModelviewObject(const Vector3f& position, float azimuth, float elevation) {
    const double sense = m_leftHand ? -1.0 : 1.0;
    const Matrix turn = Rotation(0.0, 1.0, 0.0, sense * azimuth);
    const Matrix tilt = Rotation(1.0, 0.0, 0.0, sense * elevation);
    Multiply(tilt.data(), turn.data(), m_modelview);
    m_modelview[12] = position.x;
    m_modelview[13] = position.y;
    m_modelview[14] = position.z;
}

Vector3f View::getXVector() const {
    return Row(m_modelview, 0);
}

Vector3f View::getYVector() const {
    return Row(m_modelview, 1);
}

Vector3f View::getZVector() const {
    return Row(m_modelview, 2);
}

Vector3f View::getPosition() const {
    const double* m = m_modelview;
    return {static_cast<float>(-(m[12] * m[0] + m[13] * m[1] + m[14] * m[2])),
            static_cast<float>(-(m[12] * m[4] + m[13] * m[5] + m[14] * m[6])),
            static_cast<float>(-(m[12] * m[8] + m[13] * m[9] + m[14] * m[10]))};
}

void View::ApplyTrackball(int x0, int y0, int x1, int y1, int width, int height) {
    if (x1 == x0 && y1 == y0) {
        return;
    }
    const Matrix rotation = TrackballRotation(*this, x0, y0, x1, y1, width, height);
    Multiply(m_modelview, rotation.data(), m_modelview);
    Stabilize();
}

void View::ApplyTrackball(int x0, int y0, int x1, int y1, int width, int height, Vector3f centre) {
    if (x1 == x0 && y1 == y0) {
        return;
    }
    const Matrix rotation = TrackballRotation(*this, x0, y0, x1, y1, width, height);
    Multiply(m_modelview, Translation(centre.x, centre.y, centre.z).data(), m_modelview);
    Multiply(m_modelview, rotation.data(), m_modelview);
    Multiply(m_modelview, Translation(-centre.x, -centre.y, -centre.z).data(), m_modelview);
    Stabilize();
}

void View::TranslateWorld(const Vector3f& t) {
    for (int row = 0; row < 3; ++row) {
        m_modelview[12 + row] -= t.x * m_modelview[row] + t.y * m_modelview[4 + row] + t.z * m_modelview[8 + row];
    }
    Stabilize();
}

void View::TranslateViewer(const Vector3f& t) {
    m_modelview[12] -= t.x;
    m_modelview[13] -= t.y;
    m_modelview[14] -= t.z;
}

void View::RotateWorld(const Vector4f& axisAngle) {
    Multiply(m_modelview, Rotation(axisAngle, 1.0).data(), m_modelview);
    Stabilize();
}

void View::RotateViewer(const Vector4f& axisAngle, const Vector3f& centre) {
    const double* m = m_modelview;
    const double x = m[0] * centre.x + m[4] * centre.y + m[8] * centre.z + m[12];
    const double y = m[1] * centre.x + m[5] * centre.y + m[9] * centre.z + m[13];
    const double z = m[2] * centre.x + m[6] * centre.y + m[10] * centre.z + m[14];

    // The camera turns one way, so what it sees turns the other.
    Multiply(Translation(-x, -y, -z).data(), m_modelview, m_modelview);
    Multiply(Rotation(axisAngle, -1.0).data(), m_modelview, m_modelview);
    Multiply(Translation(x, y, z).data(), m_modelview, m_modelview);
    Stabilize();
}

void View::Stabilize() {
    double* m = m_modelview;
    NormalizeElements(m[0], m[1], m[2]);
    NormalizeElements(m[4], m[5], m[6]);
    NormalizeElements(m[8], m[9], m[10]);
    NormalizeElements(m[0], m[4], m[8]);
    NormalizeElements(m[1], m[5], m[9]);
    NormalizeElements(m[2], m[6], m[10]);
}

} // namespace KOVA::Quorvex
