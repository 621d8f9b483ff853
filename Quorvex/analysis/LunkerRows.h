#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <Quorvex/analysis/LunkerRuns.h>

// From runs to cubes: which cubes have corners inside and corners outside, and which corners those are. Only where a
// run begins or ends does that change along a row of cubes, so whole stretches of cubes come out at once, and
// neighbours share what was found for the column of corners between them.

namespace KOVA::Quorvex::lunker {

// Runs that follow each other.
struct RunRange {
    const Run* begin = nullptr;
    const Run* end = nullptr;
};

// Goes along one row of cubes between four rows of voxels, in the order of the bits of cubes::Cases, and calls
// visit(x, count, corners) for each stretch of count cubes from x on that are alike and have a surface in them. A row
// has width voxels; there are no cubes beyond them.
template <class Visit> void SweepRow(std::array<RunRange, 4> rows, std::int32_t width, Visit&& visit) {
    constexpr std::int32_t never = std::numeric_limits<std::int32_t>::max();
    std::array<std::int32_t, 4> change{}; // where each row goes from outside to inside or back next
    for (std::size_t k = 0; k < rows.size(); ++k) {
        change[k] = rows[k].begin != rows[k].end ? rows[k].begin->x0 : never;
    }
    unsigned int column = 0; // rows that are inside, since x
    std::int32_t x = 0;
    while (true) {
        const std::int32_t next = std::min(std::min(change[0], change[1]), std::min(change[2], change[3]));
        if (next == never) {
            return;
        }
        if (column != 0 && column != 15 && next - 1 > x) {
            visit(x, next - 1 - x, column | column << 4U);
        }
        const unsigned int before = column;
        for (unsigned int k = 0; k < rows.size(); ++k) {
            if (change[k] != next) {
                continue;
            }
            column ^= 1U << k;
            if ((column >> k & 1U) != 0) {
                change[k] = rows[k].begin->x1;
            } else {
                ++rows[k].begin;
                change[k] = rows[k].begin != rows[k].end ? rows[k].begin->x0 : never;
            }
        }
        if (next > 0 && next < width) {
            visit(next - 1, 1, before | column << 4U);
        }
        x = next;
    }
}

// The four rows of voxels around every row of cubes, for the layers of cubes from firstLayer to endLayer - 1.
class RowWalk {
public:
    // The runs of one group, in scan order.
    RowWalk(RunRange runs, std::int32_t firstLayer, std::int32_t endLayer) : m_endLayer(endLayer) {
        for (std::size_t k = 0; k < m_next.size(); ++k) {
            const std::int32_t z = firstLayer + Dz(k);
            m_next[k] = {std::partition_point(runs.begin, runs.end, [z](const Run& run) { return run.z < z; }),
                         runs.end};
        }
    }

    // Goes to the next row of cubes at which there are runs; false at the end.
    bool Advance() {
        std::int64_t smallest = std::numeric_limits<std::int64_t>::max();
        for (std::size_t k = 0; k < m_next.size(); ++k) {
            smallest = std::min(smallest, Key(k));
        }
        if (smallest == std::numeric_limits<std::int64_t>::max()) {
            return false;
        }
        for (std::size_t k = 0; k < m_next.size(); ++k) {
            m_rows[k] = Key(k) == smallest ? TakeRow(k) : RunRange();
        }
        return true;
    }

    const std::array<RunRange, 4>& Rows() const { return m_rows; }

    // The place of the row of cubes. There are none at y of -1 and at the last row of voxels.
    std::int32_t Y() const { return m_y; }
    std::int32_t Z() const { return m_z; }

private:
    static std::int32_t Dy(std::size_t k) { return static_cast<std::int32_t>(k & 1U); }
    static std::int32_t Dz(std::size_t k) { return static_cast<std::int32_t>(k >> 1U); }

    // The place of the row of cubes that the next runs belong to, in scan order.
    std::int64_t Key(std::size_t k) const {
        const Run* const run = m_next[k].begin;
        if (run == m_next[k].end || run->z - Dz(k) >= m_endLayer) {
            return std::numeric_limits<std::int64_t>::max();
        }
        return (std::int64_t{run->z} - Dz(k)) * (std::int64_t{1} << 32U) + run->y - Dy(k);
    }

    RunRange TakeRow(std::size_t k) {
        const Run* const begin = m_next[k].begin;
        const Run* end = begin;
        while (end != m_next[k].end && end->y == begin->y && end->z == begin->z) {
            ++end;
        }
        m_next[k].begin = end;
        m_y = begin->y - Dy(k);
        m_z = begin->z - Dz(k);
        return {begin, end};
    }

    std::int32_t m_endLayer;
    std::int32_t m_y = 0;
    std::int32_t m_z = 0;
    std::array<RunRange, 4> m_next;
    std::array<RunRange, 4> m_rows;
};

} // namespace KOVA::Quorvex::lunker
