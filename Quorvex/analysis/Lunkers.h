#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/mesh/Mesh.h>

namespace KOVA::Quorvex {

class VolumeData;

// One lunker: the voxels of 255 that hang together by faces, edges or corners. In voxel coordinates: voxel (x, y, z)
// has its centre at the point (x, y, z).
struct LunkerGroup {
    std::uint64_t voxels;
    Vector3i low, high; // the first and the last voxel along each axis
    Vector3f center;    // mean of its voxels

    // Its part of the mesh that was made with the list.
    std::uint32_t firstTriangle;
    std::uint32_t triangles;
};

// What VolumeData::TriangulateLunker does, with more to tell. Groups are listed in the order of their first voxels, z
// slowest, then y, then x.
//
// Both functions throw what VolumeData::TriangulateLunker throws. They may be called on any thread while nobody writes
// to the voxels, and use all cores. progress is told from 0 to 1 how far they are, on the calling thread.
class QUORVEX_API Lunkers {
public:
    using Progress = std::function<void(double done)>;

    // The groups alone: firstTriangle and triangles are 0.
    static std::vector<LunkerGroup> Find(const VolumeData& data, const Progress& progress = nullptr);

    // The mesh of VolumeData::TriangulateLunker, and the groups that it consists of.
    static Mesh Triangulate(const VolumeData& data, std::vector<LunkerGroup>& groups,
                            const Progress& progress = nullptr);
};

} // namespace KOVA::Quorvex
