#include <Quorvex/analysis/VolumeHistogram.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <mutex>

#include <Quorvex/core/Parallel.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

namespace {

// What a thread takes at a time: its counts fit into 32 bits, and adding them up is little beside counting.
constexpr std::size_t c_part = std::size_t{1} << 22U;

// Equal neighbours would wait for each other's count: eight tables take turns.
class Tally {
public:
    void Count(const unsigned char* voxels, std::size_t count) {
        std::size_t i = 0;
        for (; i + m_tables.size() <= count; i += m_tables.size()) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, voxels + i, sizeof(eight));
            for (Table& table : m_tables) {
                ++table[eight & 255U];
                eight >>= 8U;
            }
        }
        for (; i < count; ++i) {
            ++m_tables[0][voxels[i]];
        }
    }

    void AddTo(std::array<std::uint64_t, 256>& counts) const {
        for (const Table& table : m_tables) {
            for (std::size_t level = 0; level < counts.size(); ++level) {
                counts[level] += table[level];
            }
        }
    }

private:
    using Table = std::array<std::uint32_t, 256>;
    std::array<Table, 8> m_tables{};
};

} // namespace

std::array<std::uint64_t, 256> CountIntensities(const VolumeData& data) {
    const std::size_t slice = data.getDimX() * data.getDimY();
    const std::size_t voxels = slice * data.getDimZ();
    std::array<std::uint64_t, 256> counts{};
    std::mutex mutex;
    ParallelFor((voxels + c_part - 1) / c_part, [&](std::size_t part) {
        Tally tally;
        const std::size_t end = std::min(voxels, (part + 1) * c_part);
        for (std::size_t first = part * c_part; first < end;) {
            const std::size_t count = std::min(end - first, slice - first % slice);
            tally.Count(data.Slice(first / slice) + first % slice, count);
            first += count;
        }
        const std::lock_guard lock(mutex);
        tally.AddTo(counts);
    });
    return counts;
}

Histogram HistogramOf(const VolumeData& data) {
    return HistogramOf(CountIntensities(data));
}

Histogram HistogramOf(const std::array<std::uint64_t, 256>& counts) {
    Histogram histogram(static_cast<int>(counts.size()));
    for (int level = 0; level < histogram.getSize(); ++level) {
        constexpr std::uint64_t largest = std::numeric_limits<int>::max();
        histogram[level] = static_cast<int>(std::min(counts[static_cast<std::size_t>(level)], largest));
    }
    return histogram;
}

} // namespace KOVA::Quorvex
