#include <Quorvex/analysis/LunkerRuns.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

#include <Quorvex/analysis/SharedProgress.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex::lunker {

namespace {

constexpr int c_lunker = 255;

// The first byte that is none of a lunker, or end.
const unsigned char* EndOfRun(const unsigned char* voxels, const unsigned char* end) {
    for (std::uint64_t eight = 0; end - voxels >= 8; voxels += 8) {
        std::memcpy(&eight, voxels, sizeof(eight));
        if (eight != ~std::uint64_t{0}) {
            break;
        }
    }
    return std::find_if(voxels, end, [](unsigned char voxel) { return voxel != c_lunker; });
}

// Appends the runs of rows that follow each other in memory. Looks for the next lunker across rows, because most of a
// part has none.
void AppendRuns(const VolumeData& data, std::size_t firstRow, std::size_t endRow, std::vector<Run>& runs) {
    const std::size_t width = data.getDimX();
    const std::size_t height = data.getDimY();
    std::size_t rowIndex = firstRow;
    const unsigned char* row = data.getDataPtr() + firstRow * width;
    const unsigned char* const end = data.getDataPtr() + endRow * width;
    const auto next = [end](const unsigned char* from) {
        return from == end ? nullptr
                           : static_cast<const unsigned char*>(
                                 std::memchr(from, c_lunker, static_cast<std::size_t>(end - from)));
    };
    for (const unsigned char* voxel = next(row); voxel != nullptr;) {
        if (voxel >= row + width) {
            const std::size_t rows = static_cast<std::size_t>(voxel - row) / width;
            row += rows * width;
            rowIndex += rows;
        }
        const unsigned char* const stop = EndOfRun(voxel, row + width);
        runs.push_back({static_cast<std::int32_t>(voxel - row), static_cast<std::int32_t>(stop - row),
                        static_cast<std::int32_t>(rowIndex % height), static_cast<std::int32_t>(rowIndex / height)});
        voxel = next(stop);
    }
}

bool RowIsBefore(const Run& run, std::int32_t y, std::int32_t z) {
    return run.z < z || (run.z == z && run.y < y);
}

// Sets of runs that hang together. Every run points to an earlier one of its set or, being the first, to itself.
class Sets {
public:
    explicit Sets(std::size_t count) : m_parents(count) {
        std::iota(m_parents.begin(), m_parents.end(), std::uint32_t{0});
    }

    void Join(std::size_t a, std::size_t b) {
        const std::uint32_t first = First(static_cast<std::uint32_t>(a));
        const std::uint32_t second = First(static_cast<std::uint32_t>(b));
        m_parents[std::max(first, second)] = std::min(first, second);
    }

    // The number of each run's set, counted in the order of their first runs.
    std::vector<std::uint32_t> Number() && {
        std::uint32_t sets = 0;
        for (std::size_t i = 0; i < m_parents.size(); ++i) {
            m_parents[i] = m_parents[i] == i ? sets++ : m_parents[m_parents[i]]; // the parent has its number already
        }
        return std::move(m_parents);
    }

private:
    std::uint32_t First(std::uint32_t i) {
        while (m_parents[i] != i) {
            m_parents[i] = m_parents[m_parents[i]];
            i = m_parents[i];
        }
        return i;
    }

    std::vector<std::uint32_t> m_parents;
};

// Joins runs with those that touch them in the row at (dy, dz) from their own. Both advance through the list together.
void JoinWithRow(const std::vector<Run>& runs, std::int32_t dy, std::int32_t dz, Sets& sets) {
    std::size_t other = 0;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const Run& run = runs[i];
        const std::int32_t y = run.y + dy;
        const std::int32_t z = run.z + dz;
        const auto isInRow = [&](const Run& candidate) { return candidate.y == y && candidate.z == z; };
        while (RowIsBefore(runs[other], y, z) || (isInRow(runs[other]) && runs[other].x1 < run.x0)) {
            ++other; // ends at the run itself, which is in a later row
        }
        for (std::size_t k = other; isInRow(runs[k]) && runs[k].x0 <= run.x1; ++k) {
            sets.Join(k, i);
        }
    }
}

std::vector<std::uint32_t> NumberGroups(const std::vector<Run>& runs) {
    Sets sets(runs.size());
    JoinWithRow(runs, -1, 0, sets);
    JoinWithRow(runs, -1, -1, sets);
    JoinWithRow(runs, 0, -1, sets);
    JoinWithRow(runs, 1, -1, sets);
    return std::move(sets).Number();
}

// Sums over the voxels of a group.
struct Sums {
    double x = 0.0, y = 0.0, z = 0.0;
};

void AddRun(const Run& run, LunkerGroup& group, Sums& sums) {
    const auto count = static_cast<double>(run.x1 - run.x0);
    group.low = Vector3i(std::min(group.low.x, run.x0), std::min(group.low.y, run.y), std::min(group.low.z, run.z));
    group.high =
        Vector3i(std::max(group.high.x, run.x1 - 1), std::max(group.high.y, run.y), std::max(group.high.z, run.z));
    group.voxels += static_cast<std::uint64_t>(run.x1 - run.x0);
    sums.x += count * (static_cast<double>(run.x0) + static_cast<double>(run.x1 - 1)) / 2.0;
    sums.y += count * static_cast<double>(run.y);
    sums.z += count * static_cast<double>(run.z);
}

LunkerGroup Measure(const Run* runs, const Run* end) {
    LunkerGroup group{};
    group.low = Vector3i(runs->x0, runs->y, runs->z);
    group.high = group.low;
    Sums sums;
    for (const Run* run = runs; run != end; ++run) {
        AddRun(*run, group, sums);
    }
    const auto voxels = static_cast<double>(group.voxels);
    group.center = Vector3f(static_cast<float>(sums.x / voxels), static_cast<float>(sums.y / voxels),
                            static_cast<float>(sums.z / voxels));
    return group;
}

} // namespace

std::vector<Run> FindRuns(const VolumeData& data, const Work& work, const std::function<void(double)>& progress) {
    const std::size_t rows = data.getDimX() > 0 ? data.getDimY() * data.getDimZ() : 0;
    const std::size_t partRows = std::max<std::size_t>(work.scanBytes / std::max<std::size_t>(data.getDimX(), 1), 1);
    std::vector<std::vector<Run>> parts((rows + partRows - 1) / partRows);
    SharedProgress shared(progress, parts.size());
    ParallelFor(
        parts.size(),
        [&](std::size_t i) {
            AppendRuns(data, i * partRows, std::min(rows, (i + 1) * partRows), parts[i]);
            shared.Advance();
        },
        work.threads);
    std::size_t count = 0;
    for (const std::vector<Run>& part : parts) {
        count += part.size();
    }
    std::vector<Run> runs;
    runs.reserve(count);
    for (std::vector<Run>& part : parts) {
        runs.insert(runs.end(), part.begin(), part.end());
        std::vector<Run>().swap(part);
    }
    return runs;
}

GroupedRuns GroupRuns(std::vector<Run> runs) {
    if (runs.size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_array_new_length(); // their triangles would be too many for any mesh
    }
    const std::vector<std::uint32_t> groups = NumberGroups(runs);
    GroupedRuns grouped;
    const std::size_t count = groups.empty() ? 0 : std::size_t{*std::max_element(groups.begin(), groups.end())} + 1;
    grouped.first.assign(count + 1, 0);
    for (const std::uint32_t group : groups) {
        ++grouped.first[group + 1];
    }
    std::partial_sum(grouped.first.begin(), grouped.first.end(), grouped.first.begin());
    grouped.runs.resize(runs.size());
    {
        std::vector<std::size_t> next(grouped.first.begin(), grouped.first.end() - 1);
        for (std::size_t i = 0; i < runs.size(); ++i) {
            grouped.runs[next[groups[i]]++] = runs[i];
        }
    }
    grouped.groups.reserve(count);
    for (std::size_t g = 0; g < count; ++g) {
        grouped.groups.push_back(
            Measure(grouped.runs.data() + grouped.first[g], grouped.runs.data() + grouped.first[g + 1]));
    }
    return grouped;
}

} // namespace KOVA::Quorvex::lunker
