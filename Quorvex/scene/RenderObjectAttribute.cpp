#include <Quorvex/scene/RenderObjectAttribute.h>

namespace KOVA::Quorvex {

float RenderObjectAttribute::s_fBoundingBoxRescale = 0.02F;

RenderObjectAttribute::RenderObjectAttribute() {
    m_transform.SetIdentity();
}

RenderObjectAttribute::RenderObjectAttribute(const RenderObjectAttribute& other) = default;
RenderObjectAttribute& RenderObjectAttribute::operator=(const RenderObjectAttribute& other) = default;
RenderObjectAttribute::~RenderObjectAttribute() = default;

bool RenderObjectAttribute::operator==(const RenderObjectAttribute& other) const {
    return m_color == other.m_color && m_visible == other.m_visible && m_boundingBoxColor == other.m_boundingBoxColor &&
           m_boundingBoxVisible == other.m_boundingBoxVisible && m_globalTranslation == other.m_globalTranslation;
}

} // namespace KOVA::Quorvex
