#include "VolumeSummary.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include <Quorvex/analysis/VolumeHistogram.h>

namespace KOVA::Quorvex::apps {

namespace {

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
    summary.histogram = CountIntensities(data);
    summary.voxels = std::accumulate(summary.histogram.begin(), summary.histogram.end(), std::uint64_t{0});
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
