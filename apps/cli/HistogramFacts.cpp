#include "HistogramFacts.h"

#include <algorithm>

#include <Quorvex/analysis/VolumeHistogram.h>

namespace KOVA::Quorvex::cli {

HistogramFacts Examine(const VolumeData& data, int median) {
    HistogramFacts facts;
    facts.summary = Summarize(data);
    facts.median = median;
    Histogram histogram = HistogramOf(facts.summary.histogram);
    int low = -1;
    int high = -1;
    histogram.binarize(&low, &high);
    if (low >= 0 && high >= 0) {
        facts.background = low;
        facts.material = high;
        facts.threshold = (low + high) / 2;
    }
    if (median > 0) {
        histogram.setFilterSize(median);
        histogram.filterMedian();
        std::array<int, 256>& filtered = facts.filtered.emplace();
        std::copy_n(&histogram[0], filtered.size(), filtered.begin());
    }
    const int peaks = histogram.getNumMaxima();
    for (int i = 0; i < peaks; ++i) {
        const int level = histogram.getMaximum(i);
        if (histogram[level] > 0) { // a gap of empty bins is as high as its neighbours too
            facts.peaks.push_back({level, histogram[level]});
        }
    }
    return facts;
}

std::vector<HistogramFacts::Peak> HighestPeaks(const HistogramFacts& facts, std::size_t most) {
    std::vector<HistogramFacts::Peak> peaks = facts.peaks;
    std::stable_sort(peaks.begin(), peaks.end(), [](const auto& a, const auto& b) { return a.count > b.count; });
    peaks.resize(std::min(most, peaks.size()));
    std::sort(peaks.begin(), peaks.end(), [](const auto& a, const auto& b) { return a.level < b.level; });
    return peaks;
}

} // namespace KOVA::Quorvex::cli
