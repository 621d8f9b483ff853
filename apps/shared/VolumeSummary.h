#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "Programs.h"

namespace KOVA::Quorvex {
class VolumeData;
}

namespace KOVA::Quorvex::apps {

// What can be said about voxels without drawing them. All levels are 0..255.
struct VolumeSummary {
    std::array<std::uint64_t, 256> histogram{};
    std::uint64_t voxels = 0;
    int low = 0; // the smallest and the largest voxel
    int high = 0;
    double mean = 0.0;

    // The level that parts the voxels best into two kinds, air up to it and material above (Otsu's method: the largest
    // variance between the two), and the most frequent level of either. None when all voxels are alike.
    struct Parts {
        int threshold;
        int air;
        int material;
        double materialShare; // of all voxels
    };
    std::optional<Parts> parts;
};

VolumeSummary Summarize(const VolumeData& data);

} // namespace KOVA::Quorvex::apps
