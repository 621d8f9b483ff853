#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>

namespace {

using namespace KOVA::Quorvex;
using testing::ElementsAre;

using Values = std::vector<int>;

Histogram Of(const Values& values) {
    Histogram histogram(static_cast<int>(values.size()));
    for (int i = 0; i < histogram.getSize(); ++i) {
        histogram[i] = values[static_cast<std::size_t>(i)];
    }
    return histogram;
}

Values BinsOf(const Histogram& histogram) {
    return histogram.getSize() > 0 ? Values(&histogram[0], &histogram[0] + histogram.getSize()) : Values();
}

Values PeaksOf(const Values& values) {
    return Histogram().findMaxima(values.data(), static_cast<int>(values.size()));
}

Values Random(std::size_t size, int levels, std::mt19937& random) {
    Values values(size);
    std::generate(values.begin(), values.end(),
                  [&] { return static_cast<int>(random() % static_cast<unsigned int>(levels)); });
    return values;
}

TEST(HistogramTest, LimitsOfBinsAndTheirOddities) {
    EXPECT_EQ(Histogram().getSize(), 256);
    EXPECT_EQ(Histogram().getFilterSize(), 3);
    struct Case {
        Values bins;
        int lowest, highest, min, max;
    };
    for (const Case& c : {Case{{3, 5, 7}, 0, 2, -1, 7}, Case{{3, -2}, 0, 1, -2, 3}, Case{{-3, -5}, 0, 1, -5, 0},
                          Case{Values(10), 0, 9, -1, 0}, Case{{0, 0, 4, 0, 1, 0}, 2, 4, -1, 4},
                          Case{{4, 0, 0, 0}, 0, 3, -1, 4}, Case{{9}, 0, 0, -1, 9}, Case{{}, 0, -1, -1, 0}}) {
        const Histogram histogram = Of(c.bins);
        EXPECT_EQ(histogram.getLowestIndex(), c.lowest) << testing::PrintToString(c.bins);
        EXPECT_EQ(histogram.getHighestIndex(), c.highest) << testing::PrintToString(c.bins);
        EXPECT_EQ(histogram.getMin(), c.min) << testing::PrintToString(c.bins);
        EXPECT_EQ(histogram.getMax(), c.max) << testing::PrintToString(c.bins);
    }
}

TEST(HistogramTest, CopiesShareBinsAndNothingElse) {
    Histogram source = Of({0, 5, 0, 6, 0});
    EXPECT_EQ(source.getMaximum(0), -1);
    ASSERT_EQ(source.getNumMaxima(), 2);
    Histogram assigned(3);
    {
        Histogram copy(source);
        assigned = copy;
        copy[1] = 7;
        copy.setFilterSize(9);
    }
    EXPECT_EQ(source[1], 7);
    EXPECT_EQ(assigned[1], 7);
    EXPECT_EQ(source.getFilterSize(), 3);
    assigned[3] = 0;
    EXPECT_EQ(assigned.getMaximum(1), 3); // of the search before
    EXPECT_EQ(assigned.getNumMaxima(), 1);
    EXPECT_EQ(source.getMaximum(1), 3);
    EXPECT_EQ(source.getMaximum(2) + source.getMaximum(-1), -2);
    assigned.setSize(2);
    assigned.reset();
    EXPECT_EQ(BinsOf(assigned), Values(2));
    EXPECT_THAT(BinsOf(source), ElementsAre(0, 7, 0, 0, 0));
    for (const int none : {0, -1}) { // nothing to find, nothing to trip over
        source.setSize(none);
        source.reset();
        source.filterMedian();
        EXPECT_EQ(source.getNumMaxima(), 0);
    }
}

TEST(HistogramTest, MedianIsThatOfEveryWindow) {
    Values values{9, 2, 8, 1, 7};
    Histogram().filterMedian(values.data(), 5, 2); // as 3
    EXPECT_THAT(values, ElementsAre(9, 8, 2, 7, 7));
    std::mt19937 random(1);
    for (int run = 0; run < 300; ++run) {
        const Values source = Random(1 + random() % 40, 2 + run, random);
        const int width = run == 0 ? std::numeric_limits<int>::max() : static_cast<int>(random() % 50);
        const int reach = std::min(width / 2, 40);
        Values filtered = source;
        Histogram().filterMedian(filtered.data(), static_cast<int>(source.size()), width);
        for (int i = 0; i < static_cast<int>(source.size()); ++i) {
            Values window(source.begin() + std::max(0, i - reach),
                          source.begin() + std::min(static_cast<int>(source.size()), i + reach + 1));
            std::sort(window.begin(), window.end());
            ASSERT_EQ(filtered[static_cast<std::size_t>(i)], window[window.size() / 2]) << width << " " << i;
        }
    }
    Histogram histogram = Of({1, 9, 1, 9, 9, 1, 1});
    histogram.setFilterSize(5);
    histogram.filterMedian();
    EXPECT_THAT(BinsOf(histogram), ElementsAre(1, 9, 9, 9, 1, 9, 1));
}

TEST(HistogramTest, PeaksAndPlateaus) {
    struct Case {
        Values values, peaks;
    };
    for (const Case& c : {Case{{0, 5, 0}, {1}}, Case{{5, 0, 0}, {0}}, Case{{0, 3, 3, 0}, {2}}, Case{{0, 0, 7}, {2}},
                          Case{{0, 7, 7}, {}}, Case{{4, 4, 4}, {}}, Case{{4, 4, 4, 1}, {1}}, Case{{3, 3, 0}, {1}},
                          Case{{}, {}}, Case{{1}, {}}, Case{{1, 2}, {1}}, Case{{2, 1}, {0}},
                          Case{{0, 2, 1, 2, 2, 2, 0, -1, 0}, {1, 4, 8}}, Case{{9, 1, 1}, {0}}}) {
        EXPECT_EQ(PeaksOf(c.values), c.peaks) << testing::PrintToString(c.values);
        Histogram histogram = Of(c.values);
        ASSERT_EQ(histogram.getNumMaxima(), static_cast<int>(c.peaks.size()));
        for (int i = 0; i < histogram.getNumMaxima(); ++i) {
            EXPECT_EQ(histogram.getMaximum(i), c.peaks[static_cast<std::size_t>(i)]);
        }
    }
    // Backwards the same peaks come out where no neighbours are equal.
    std::mt19937 random(2);
    for (int run = 0; run < 100; ++run) {
        Values values = Random(60, 1 << 30, random);
        const Values peaks = PeaksOf(values);
        std::reverse(values.begin(), values.end());
        Values backwards = PeaksOf(values);
        std::reverse(backwards.begin(), backwards.end());
        std::transform(backwards.begin(), backwards.end(), backwards.begin(), [](int i) { return 59 - i; });
        ASSERT_EQ(backwards, peaks);
    }
}

TEST(HistogramTest, TwoPeaksPartBackgroundFromMaterial) {
    std::mt19937 random(3);
    const auto binarized = [](const Histogram& histogram) {
        std::pair<int, int> peaks(7, 7);
        histogram.binarize(&peaks.first, &peaks.second);
        return peaks;
    };
    for (int run = 0; run < 20; ++run) { // two bells in noise
        Values values = Random(256, 40, random);
        const int first = 40 + static_cast<int>(random() % 40);
        const int second = 150 + static_cast<int>(random() % 60);
        for (int i = 0; i < 256; ++i) {
            values[static_cast<std::size_t>(i)] +=
                std::max({0, 1000 - 30 * std::abs(i - first), 700 - 15 * std::abs(i - second)});
        }
        Histogram histogram = Of(values);
        const auto [low, high] = binarized(histogram);
        EXPECT_NEAR(low, first, 6);
        EXPECT_NEAR(high, second, 8);
        EXPECT_EQ(BinsOf(histogram), values);
    }
    EXPECT_EQ(binarized(Histogram(1024)), std::pair(100, 400));
    EXPECT_EQ(binarized(Histogram(513)), std::pair(100, 400));
    EXPECT_EQ(binarized(Of(Values(512, 3))), std::pair(-1, -1));
    EXPECT_EQ(binarized(Histogram(0)), std::pair(-1, -1));
    EXPECT_EQ(binarized(Of({5, 4, 3, 2, 1, 0})), std::pair(1, -1));
    EXPECT_LE(binarized(Of(Random(512, 1 << 30, random))).second, 511); // ends, whatever there is
}

TEST(VolumeHistogramTest, EveryVoxelIsCountedOnce) {
    std::mt19937 random(4);
    std::vector<unsigned char> voxels(std::size_t{301} * 211 * 97); // larger than what one thread counts at a time
    std::generate(voxels.begin(), voxels.end(), [&] { return static_cast<unsigned char>(random() & random()); });
    std::array<std::uint64_t, 256> expected{};
    for (const unsigned char voxel : voxels) {
        ++expected[voxel];
    }
    const std::size_t slice = std::size_t{301} * 211;
    const VolumeData data(301, 211, 97, {voxels.data(), voxels.data() + 3 * slice, voxels.data() + 50 * slice},
                          {0, 3, 50});
    EXPECT_EQ(CountIntensities(data), expected);
    const Histogram histogram = HistogramOf(data);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), &histogram[0],
                           [](std::uint64_t a, int b) { return a == static_cast<std::uint64_t>(b); }));
    EXPECT_EQ(HistogramOf(VolumeData()).getMax(), 0);
    expected[7] = std::uint64_t{1} << 40U;
    EXPECT_EQ(HistogramOf(expected)[7], std::numeric_limits<int>::max());
}

} // namespace
