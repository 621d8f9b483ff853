#include <Quorvex/volume/Brick.h>

#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

Brick::Brick(const Vector3f& bb0, const Vector3f& bb1, unsigned int textureID, unsigned char minIntensity,
             unsigned char maxIntensity)
    : m_bb0(bb0), m_bb1(bb1), m_textureID(textureID), m_minIntensity(minIntensity), m_maxIntensity(maxIntensity) {}

void Brick::UpdateDistance(const View* view) {
    const double* const m = view->GetModelviewMatrix();
    const double cx = (static_cast<double>(m_bb0.x) + static_cast<double>(m_bb1.x)) / 2.0;
    const double cy = (static_cast<double>(m_bb0.y) + static_cast<double>(m_bb1.y)) / 2.0;
    const double cz = (static_cast<double>(m_bb0.z) + static_cast<double>(m_bb1.z)) / 2.0;
    const double ex = cx * m[0] + cy * m[4] + cz * m[8] + m[12];
    const double ey = cx * m[1] + cy * m[5] + cz * m[9] + m[13];
    const double ez = cx * m[2] + cy * m[6] + cz * m[10] + m[14];
    m_distance = ex * ex + ey * ey + ez * ez;
}

} // namespace KOVA::Quorvex
