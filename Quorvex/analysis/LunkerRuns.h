#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <Quorvex/analysis/Lunkers.h>
#include <Quorvex/core/Parallel.h>

// Lunker voxels as runs along x, and runs as groups. A run costs 16 bytes and causes at least two triangles unless it
// lies at the border, so runs are little beside the surface that is made of them, and nothing here depends on the
// number of voxels but one look at each of them.

namespace KOVA::Quorvex::lunker {

// What the voxels are made into takes its time, and is done by several threads; the result does not depend on this.
struct Work {
    std::size_t scanBytes = std::size_t{1} << 20; // voxels that a thread takes at a time
    std::size_t pieceRuns = 2048;                 // runs of which it makes triangles at a time
    unsigned int threads = ParallelThreads();
};

// Voxels x0 to x1 - 1 of a row, with others or the border on both sides.
struct Run {
    std::int32_t x0, x1, y, z;
};

// All runs by group, the groups in the order of their first voxels, z slowest, then y, then x; the runs of a group are
// in that order too. Group g has the runs first[g] to first[g + 1] - 1.
struct GroupedRuns {
    std::vector<Run> runs;
    std::vector<std::size_t> first;
    std::vector<LunkerGroup> groups; // the triangles are not counted
};

// The runs of the voxels of 255 of a volume in a single block, in scan order. Told the share that is done.
std::vector<Run> FindRuns(const VolumeData& data, const Work& work, const std::function<void(double)>& progress);

// Parts runs in scan order into groups: two belong together when voxels of theirs touch, be it at a corner.
GroupedRuns GroupRuns(std::vector<Run> runs);

} // namespace KOVA::Quorvex::lunker
