// Where voxels are in the world.

#include <algorithm>
#include <limits>

#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

namespace {

float CentreOf(int voxel, float low, float high, std::size_t dimension) {
    const double place = static_cast<double>(static_cast<unsigned int>(voxel)) + 0.5;
    const double extent = static_cast<double>(high) - static_cast<double>(low);
    return static_cast<float>(static_cast<double>(low) + extent * place / static_cast<double>(dimension));
}

// A voxel's centre lies exactly on the border between two results. What its coordinate lost when it was rounded to a
// float is given back, so that all centres fall on the same side.
int VoxelAt(float position, float low, float high, std::size_t dimension, double roundingOfCentre) {
    const double extent = static_cast<double>(high) - static_cast<double>(low);
    const double place =
        (static_cast<double>(position) - static_cast<double>(low)) * static_cast<double>(dimension) / extent;
    const double voxel = place + 0.5 + roundingOfCentre;
    if (!(voxel == voxel)) {
        return 0;
    }
    return static_cast<int>(std::clamp(voxel, static_cast<double>(std::numeric_limits<int>::min()),
                                       static_cast<double>(std::numeric_limits<int>::max())));
}

} // namespace

Vector3f VolumeData::VoxelToWorld(const Vector3i& v) const {
    const Vector3f low = GetBB0();
    const Vector3f high = GetBB1();
    return {CentreOf(v.x, low.x, high.x, m_dimX), CentreOf(v.y, low.y, high.y, m_dimY),
            CentreOf(v.z, low.z, high.z, m_dimZ)};
}

Vector3i VolumeData::WorldToVoxel(const Vector3f& p) const {
    const Vector3f low = GetBB0();
    const Vector3f high = GetBB1();
    // Coordinates inside the box are at most 1, so they are rounded by 2^-25, which is that many halves of a voxel.
    const double rounding = static_cast<double>(std::max({m_dimX, m_dimY, m_dimZ})) * 0x1p-25;
    return {VoxelAt(p.x, low.x, high.x, m_dimX, rounding), VoxelAt(p.y, low.y, high.y, m_dimY, rounding),
            VoxelAt(p.z, low.z, high.z, m_dimZ, rounding)};
}

} // namespace KOVA::Quorvex
