#include <Quorvex/volume/SliceBatch.h>

#include <algorithm>

#include <Quorvex/core/OpenGL.h>

namespace KOVA::Quorvex {

void SliceBatch::Add(const Vector3f* points, int count) {
    const int first = m_numPoints;
    for (int i = 0; i < count; ++i) {
        m_points[static_cast<std::size_t>(m_numPoints++)] = points[i];
    }
    for (int i = 2; i < count; ++i) {
        for (const int corner : {first, first + i - 1, first + i}) {
            m_indices[static_cast<std::size_t>(m_numIndices++)] = static_cast<unsigned short>(corner);
        }
    }
}

void SliceBatch::Draw() {
    if (!IsEmpty()) {
        glVertexPointer(3, GL_FLOAT, 0, m_points.data());
        glDrawElements(GL_TRIANGLES, m_numIndices, GL_UNSIGNED_SHORT, m_indices.data());
    }
    m_numPoints = 0;
    m_numIndices = 0;
}

} // namespace KOVA::Quorvex
