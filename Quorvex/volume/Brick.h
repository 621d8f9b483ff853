#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

class View;

// One piece of a volume: a 3D texture, the box that it fills in world coordinates and the range of its voxels. A plain
// value: the texture belongs to the volume data that made the brick, and destroying a brick does not delete it.
class QUORVEX_API Brick {
public:
    Brick() = default;
    Brick(const Vector3f& bb0, const Vector3f& bb1, unsigned int textureID, unsigned char minIntensity,
          unsigned char maxIntensity);

    Vector3f GetBB0() const { return m_bb0; } // minimum corner
    Vector3f GetBB1() const { return m_bb1; } // maximum corner

    // OpenGL name of the texture, shared by all contexts of the library; 0 for none.
    unsigned int GetTextureID() const { return m_textureID; }
    void setTextureID(unsigned int id) { m_textureID = id; }

    // The smallest and the largest voxel in the texture, the border that it shares with its neighbours included. The
    // setter keeps the low eight bits.
    unsigned char GetMinIntensity() const { return m_minIntensity; }
    unsigned char GetMaxIntensity() const { return m_maxIntensity; }
    void setMinMaxIntensity(unsigned int minIntensity, unsigned int maxIntensity) {
        m_minIntensity = static_cast<unsigned char>(minIntensity & 0xFFU);
        m_maxIntensity = static_cast<unsigned char>(maxIntensity & 0xFFU);
    }

    // Takes the squared distance of the box's centre from the view's eye.
    void UpdateDistance(const View* view);

    // By the distances taken last: the farthest brick comes first.
    bool operator<(const Brick& other) const { return m_distance > other.m_distance; }

private:
    friend class VolumeData;

    Vector3f m_bb0{0.0F, 0.0F, 0.0F};
    Vector3f m_bb1{0.0F, 0.0F, 0.0F};
    double m_distance = 0.0;
    unsigned int m_textureID = 0;
    unsigned char m_minIntensity = 0;
    unsigned char m_maxIntensity = 0;
};

} // namespace KOVA::Quorvex
