#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

// The geometry half of a render object: bounding box, centre and radius in object coordinates, and the counter of the
// objects that share it (see RenderObject). Not thread-safe.
class QUORVEX_API RenderObjectData {
public:
    RenderObjectData() = default;

    // A copy is new data that nobody shares yet: its counter is 1 whatever the source's is.
    RenderObjectData(const RenderObjectData& other);
    RenderObjectData& operator=(const RenderObjectData& other);

    virtual ~RenderObjectData();

    Vector3f GetBB0() const { return m_BB0; } // minimum corner
    Vector3f GetBB1() const { return m_BB1; } // maximum corner
    Vector3f GetCenter() const { return m_center; }
    float GetRadius() const { return m_radius; }
    void SetBB0(const Vector3f& corner) { m_BB0 = corner; }
    void SetBB1(const Vector3f& corner) { m_BB1 = corner; }
    void SetCenter(const Vector3f& center) { m_center = center; }
    void SetRadius(float radius) { m_radius = radius; }

    // One plus the number of render objects on this data. Both changes return the new value.
    unsigned int IncInstanceCounter() { return ++m_instanceCounter; }
    unsigned int DecInstanceCounter() { return --m_instanceCounter; }
    unsigned int GetInstanceCounter() const { return m_instanceCounter; }

    // Exact, and with the counter: shared data does not equal a fresh copy of itself.
    bool operator==(const RenderObjectData& other) const;
    bool operator!=(const RenderObjectData& other) const { return !(*this == other); }

protected:
    // For assignments that keep the number of objects that already share the target.
    void CopyGeometry(const RenderObjectData& other);

private:
    unsigned int m_instanceCounter = 1;
    Vector3f m_BB0{0.0F, 0.0F, 0.0F};
    Vector3f m_BB1{0.0F, 0.0F, 0.0F};
    Vector3f m_center{0.0F, 0.0F, 0.0F};
    float m_radius = 0.0F;
};

} // namespace KOVA::Quorvex
