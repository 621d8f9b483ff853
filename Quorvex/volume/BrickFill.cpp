#include <Quorvex/volume/BrickFill.h>

#include <algorithm>
#include <cstring>

namespace KOVA::Quorvex::bricks {

namespace {

// The part of a brick's run along one axis that lies inside the volume.
struct Run {
    std::size_t before; // voxels of the run that lie in front of the volume
    std::size_t inside;
    std::size_t first; // place in the volume of the first voxel inside
};

// The run has its second voxel at start.
Run ClipRun(std::size_t start, std::size_t size, std::size_t dimension) {
    Run run{};
    run.before = start == 0 ? std::min<std::size_t>(size, 1) : 0;
    run.first = start == 0 ? 0 : start - 1;
    const std::size_t left = run.first < dimension ? dimension - run.first : 0;
    run.inside = std::min(size - run.before, left);
    return run;
}

// Rows of the bricks that are usually made are copied without a call.
void CopyRow(unsigned char* target, const unsigned char* row, std::size_t count) {
    constexpr std::size_t usual = 32;
    if (count == usual) {
        std::memcpy(target, row, usual);
    } else {
        std::memcpy(target, row, count);
    }
}

Range MeasureRange(const unsigned char* voxels, std::size_t count) {
    Range range;
    for (std::size_t i = 0; i < count; ++i) {
        range.low = std::min(range.low, voxels[i]);
        range.high = std::max(range.high, voxels[i]);
    }
    return range;
}

} // namespace

Axis CutAxis(std::size_t dimension, std::size_t size, std::size_t border, float low, float high) {
    Axis axis;
    axis.step = size - border;
    axis.count = dimension / axis.step + (dimension % axis.step != 0 ? 1 : 0);
    if (axis.count == 0) {
        return axis;
    }
    const auto covered = static_cast<float>(axis.step * axis.count);
    const auto padding = static_cast<float>(axis.step * axis.count - dimension);
    const float factor = covered / static_cast<float>(dimension);
    low *= factor;
    high *= factor;
    const float shift = padding * ((high - low) / 2.0F) / covered;
    axis.low = low + shift;
    axis.width = (high + shift - axis.low) / static_cast<float>(axis.count);
    return axis;
}

Grid CutVolume(const VolumeData& volume, std::size_t sizeX, std::size_t sizeY, std::size_t sizeZ, std::size_t border) {
    const Vector3f low = volume.GetBB0();
    const Vector3f high = volume.GetBB1();
    return {sizeX,
            sizeY,
            sizeZ,
            border,
            CutAxis(volume.getDimX(), sizeX, border, low.x, high.x),
            CutAxis(volume.getDimY(), sizeY, border, low.y, high.y),
            CutAxis(volume.getDimZ(), sizeZ, border, low.z, high.z)};
}

Range FillBrick(const VolumeData& volume, const Grid& grid, std::size_t i, unsigned char* voxels) {
    const std::size_t dimX = volume.getDimX();
    const Run x = ClipRun(i % grid.x.count * grid.x.step, grid.sizeX, dimX);
    const Run y = ClipRun(i / grid.x.count % grid.y.count * grid.y.step, grid.sizeY, volume.getDimY());
    const Run z = ClipRun(i / grid.x.count / grid.y.count * grid.z.step, grid.sizeZ, volume.getDimZ());
    if (x.inside * y.inside * z.inside < grid.BrickBytes()) {
        std::memset(voxels, 0, grid.BrickBytes());
    }
    for (std::size_t k = 0; k < z.inside; ++k) {
        const unsigned char* row = volume.Slice(z.first + k) + y.first * dimX + x.first;
        unsigned char* target = voxels + ((z.before + k) * grid.sizeY + y.before) * grid.sizeX + x.before;
        for (std::size_t j = 0; j < y.inside; ++j, row += dimX, target += grid.sizeX) {
            CopyRow(target, row, x.inside);
        }
    }
    return MeasureRange(voxels, grid.BrickBytes());
}

} // namespace KOVA::Quorvex::bricks
