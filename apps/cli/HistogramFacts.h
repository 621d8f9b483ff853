#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "VolumeSummary.h"

namespace KOVA::Quorvex {
class VolumeData;
}

namespace KOVA::Quorvex::cli {

// What a histogram tells about a volume. All levels are 0..255.
struct HistogramFacts {
    struct Peak {
        int level;
        int count; // of the bins that were searched
    };

    VolumeSummary summary;                        // the counts as they are, and the level that parts them best
    int median = 0;                               // width of the filter; 0 for none
    std::optional<std::array<int, 256>> filtered; // the counts after it, when there is one
    std::vector<Peak> peaks;                      // of the counts after the filter, from left to right
    std::optional<int> background;                // the two peaks that remain when the filter is made wide enough
    std::optional<int> material;
    std::optional<int> threshold; // half-way between those two
};

// median: width of the median filter that the peaks are searched behind, 0 for none.
HistogramFacts Examine(const VolumeData& data, int median);

// The peaks with the largest counts, most at most, from left to right.
std::vector<HistogramFacts::Peak> HighestPeaks(const HistogramFacts& facts, std::size_t most);

} // namespace KOVA::Quorvex::cli
