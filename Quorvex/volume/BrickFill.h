#pragma once

#include <cstddef>
#include <vector>

#include <Quorvex/volume/VolumeData.h>

// Cutting bricks out of a volume: computation only, no GL.

namespace KOVA::Quorvex::bricks {

// How one axis is cut: count bricks that advance by step voxels, and the world interval that they cover, which begins
// where the volume begins and reaches past its end by the padding of the last brick.
struct Axis {
    std::size_t count = 0;
    std::size_t step = 0;
    float low = 0.0F;
    float width = 0.0F; // of one brick

    float Start(std::size_t i) const { return low + static_cast<float>(i) * width; }
};

// low and high are the volume's box; a brick of size voxels, size > border, shares border with its neighbours.
Axis CutAxis(std::size_t dimension, std::size_t size, std::size_t border, float low, float high);

struct Grid {
    std::size_t sizeX = 0, sizeY = 0, sizeZ = 0; // voxels of a brick
    std::size_t border = 0;                      // of them, shared with each neighbour
    Axis x, y, z;

    std::size_t Count() const { return x.count * y.count * z.count; }
    std::size_t BrickBytes() const { return sizeX * sizeY * sizeZ; }
};

Grid CutVolume(const VolumeData& volume, std::size_t sizeX, std::size_t sizeY, std::size_t sizeZ, std::size_t border);

struct Range {
    unsigned char low = 255;
    unsigned char high = 0;
};

// Writes the voxels of brick number i (x fastest, then y, then z) of the grid, x fastest, and returns their range. The
// brick begins one voxel before its own part of the volume; voxels outside the volume are 0.
Range FillBrick(const VolumeData& volume, const Grid& grid, std::size_t i, unsigned char* voxels);

} // namespace KOVA::Quorvex::bricks
