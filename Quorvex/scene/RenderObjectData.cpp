#include <Quorvex/scene/RenderObjectData.h>

namespace KOVA::Quorvex {

RenderObjectData::RenderObjectData(const RenderObjectData& other) {
    CopyGeometry(other);
}

RenderObjectData& RenderObjectData::operator=(const RenderObjectData& other) {
    if (this != &other) { // data that is assigned to itself has not become a copy: its objects still count
        CopyGeometry(other);
        m_instanceCounter = 1;
    }
    return *this;
}

RenderObjectData::~RenderObjectData() = default;

bool RenderObjectData::operator==(const RenderObjectData& other) const {
    return m_instanceCounter == other.m_instanceCounter && m_BB0 == other.m_BB0 && m_BB1 == other.m_BB1 &&
           m_center == other.m_center && m_radius == other.m_radius;
}

void RenderObjectData::CopyGeometry(const RenderObjectData& other) {
    m_BB0 = other.m_BB0;
    m_BB1 = other.m_BB1;
    m_center = other.m_center;
    m_radius = other.m_radius;
}

} // namespace KOVA::Quorvex
