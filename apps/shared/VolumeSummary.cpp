#include "VolumeSummary.h"

#include <algorithm>
#include <cstddef>

#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex::apps {

namespace {

void Count(const VolumeData& data, VolumeSummary& summary) {
    // Equal neighbours would wait for each other's count: four tables take turns.
    std::array<std::array<std::uint64_t, 256>, 4> tables{};
    const std::size_t slice = data.getDimX() * data.getDimY();
    for (std::size_t z = 0; z < data.getDimZ(); ++z) {
        const unsigned char* const voxels = data.Slice(z);
        for (std::size_t i = 0; i < slice; ++i) {
            ++tables[i % 4][voxels[i]];
        }
    }
    for (std::size_t level = 0; level < 256; ++level) {
        summary.histogram[level] = tables[0][level] + tables[1][level] + tables[2][level] + tables[3][level];
    }
    summary.voxels = std::uint64_t{slice} * data.getDimZ();
}

int MostFrequent(const VolumeSummary& summary, int first, int last) {
    const std::uint64_t* const levels = summary.histogram.data();
    return static_cast<int>(std::max_element(levels + first, levels + last + 1) - levels);
}

VolumeSummary::Parts Part(const VolumeSummary& summary) {
    const auto total = static_cast<double>(summary.voxels);
    double count = 0.0;
    double sum = 0.0;
    double best = -1.0;
    int firstBest = summary.low; // levels that no voxel has give the same variance: the middle of them is meant
    int lastBest = summary.low;
    VolumeSummary::Parts parts{};
    for (int level = summary.low; level < summary.high; ++level) {
        const auto voxels = static_cast<double>(summary.histogram[static_cast<std::size_t>(level)]);
        count += voxels;
        sum += voxels * level;
        const double difference = sum / count - (summary.mean * total - sum) / (total - count);
        const double variance = count * (total - count) * difference * difference;
        if (variance > best) {
            best = variance;
            firstBest = level;
            parts.materialShare = (total - count) / total;
        }
        lastBest = variance >= best ? level : lastBest;
    }
    parts.threshold = (firstBest + lastBest) / 2;
    parts.air = MostFrequent(summary, summary.low, parts.threshold);
    parts.material = MostFrequent(summary, parts.threshold + 1, summary.high);
    return parts;
}

} // namespace

VolumeSummary Summarize(const VolumeData& data) {
    VolumeSummary summary;
    Count(data, summary);
    if (summary.voxels == 0) {
        return summary;
    }
    const auto isUsed = [](std::uint64_t count) { return count > 0; };
    const auto& histogram = summary.histogram;
    summary.low = static_cast<int>(std::find_if(histogram.begin(), histogram.end(), isUsed) - histogram.begin());
    summary.high =
        255 - static_cast<int>(std::find_if(histogram.rbegin(), histogram.rend(), isUsed) - histogram.rbegin());
    double sum = 0.0;
    for (std::size_t level = 0; level < 256; ++level) {
        sum += static_cast<double>(histogram[level]) * static_cast<double>(level);
    }
    summary.mean = sum / static_cast<double>(summary.voxels);
    if (summary.low < summary.high) {
        summary.parts = Part(summary);
    }
    return summary;
}

} // namespace KOVA::Quorvex::apps
