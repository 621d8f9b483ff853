#include <Quorvex/mesh/MeshAttribute.h>

namespace KOVA::Quorvex {

MeshAttribute::~MeshAttribute() = default;

bool MeshAttribute::operator==(const MeshAttribute& other) const {
    return RenderObjectAttribute::operator==(other) && m_renderMode == other.m_renderMode &&
           m_lineWidth == other.m_lineWidth && m_shininess == other.m_shininess && m_specularity == other.m_specularity;
}

} // namespace KOVA::Quorvex
