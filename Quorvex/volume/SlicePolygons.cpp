#include <Quorvex/volume/SlicePolygons.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace KOVA::Quorvex {

namespace {

constexpr int NUM_EDGES = 12;

// Whole numbers up to here are exact in a double.
constexpr double MAX_PLANE = 4503599627370496.0;

// Edge e runs along axis e / 4. The corner at its lower end has bit 0 of e % 4 on the next axis and bit 1 on the one
// after it; corners are numbered x + 2y + 4z.
constexpr int LowerEnd(int edge) {
    const int axis = edge / 4;
    return ((edge & 1) << ((axis + 1) % 3)) | (((edge >> 1) & 1) << ((axis + 2) % 3));
}

constexpr int UpperEnd(int edge) {
    return LowerEnd(edge) | (1 << (edge / 4));
}

constexpr bool ShareFace(int first, int second) {
    const int both = LowerEnd(first) & UpperEnd(first) & LowerEnd(second) & UpperEnd(second);
    const int any = LowerEnd(first) | UpperEnd(first) | LowerEnd(second) | UpperEnd(second);
    return both != 0 || any != 7;
}

// The edges that a plane crosses, in order around its polygon.
struct Cycle {
    int count = 0;
    std::array<unsigned char, MAX_SLICE_POINTS> edges{};
};

// below: the corners on the lower side of the plane, a bit each. Sets that no plane separates have no cycle.
constexpr Cycle FindCycle(int below) {
    std::array<int, NUM_EDGES> crossed{};
    int count = 0;
    for (int edge = 0; edge < NUM_EDGES; ++edge) {
        if (((below >> LowerEnd(edge)) & 1) != ((below >> UpperEnd(edge)) & 1)) {
            crossed[static_cast<std::size_t>(count++)] = edge;
        }
    }
    Cycle cycle;
    if (count < 3 || count > MAX_SLICE_POINTS) {
        return cycle;
    }
    // Each next edge shares a face of the box with the one before: on a face the plane's cut is one straight line.
    for (int i = 0; i < count; ++i) {
        int next = i;
        while (i > 0 && next < count &&
               !ShareFace(crossed[static_cast<std::size_t>(i) - 1], crossed[static_cast<std::size_t>(next)])) {
            ++next;
        }
        if (next == count) {
            return cycle;
        }
        std::swap(crossed[static_cast<std::size_t>(i)], crossed[static_cast<std::size_t>(next)]);
        cycle.edges[static_cast<std::size_t>(i)] = static_cast<unsigned char>(crossed[static_cast<std::size_t>(i)]);
    }
    cycle.count = ShareFace(crossed[0], crossed[static_cast<std::size_t>(count) - 1]) ? count : 0;
    return cycle;
}

constexpr std::array<Cycle, 256> FindCycles() {
    std::array<Cycle, 256> cycles;
    for (int below = 0; below < 256; ++below) {
        cycles[static_cast<std::size_t>(below)] = FindCycle(below);
    }
    return cycles;
}

constexpr std::array<Cycle, 256> s_cycles = FindCycles();

} // namespace

PlaneStack SlicesAcross(const double* modelview, double spacing) {
    return {modelview[2] / spacing, modelview[6] / spacing, modelview[10] / spacing, modelview[14] / spacing};
}

BoxSlicer::BoxSlicer(const PlaneStack& planes, const Vector3f& low, const Vector3f& high) : m_low(low), m_high(high) {
    const double slope[3] = {planes.a, planes.b, planes.c};
    const double part[3][2] = {{slope[0] * low.x, slope[0] * high.x},
                               {slope[1] * low.y, slope[1] * high.y},
                               {slope[2] * low.z, slope[2] * high.z}};
    for (int corner = 0; corner < 8; ++corner) {
        // In one order for all corners, so that the sums rise and fall with each coordinate whatever is rounded: the
        // corners below a plane are then always a set that a plane can separate.
        m_corners[corner] = part[0][corner & 1] + part[1][(corner >> 1) & 1] + part[2][corner >> 2] + planes.d;
    }
    for (int axis = 0; axis < 3; ++axis) {
        m_scale[axis] = 1.0 / slope[axis];
        for (int edge = 0; edge < 4; ++edge) {
            // From the edge's line alone, not from where the edge begins and ends.
            const double others = part[(axis + 1) % 3][edge & 1] + part[(axis + 2) % 3][edge >> 1] + planes.d;
            m_offset[axis][edge] = -others * m_scale[axis];
        }
    }
    const auto [least, greatest] = std::minmax_element(std::begin(m_corners), std::end(m_corners));
    if (*least > -MAX_PLANE && *greatest < MAX_PLANE) {
        m_first = static_cast<std::int64_t>(std::floor(*least)) + 1;
        m_last = static_cast<std::int64_t>(std::floor(*greatest));
    }
}

int BoxSlicer::Cut(std::int64_t k, Vector3f* points) const {
    const auto plane = static_cast<double>(k);
    unsigned int below = 0;
    for (unsigned int corner = 0; corner < 8; ++corner) {
        below |= static_cast<unsigned int>(m_corners[corner] < plane) << corner;
    }
    const Cycle& cycle = s_cycles[below];
    for (int i = 0; i < cycle.count; ++i) {
        const int edge = cycle.edges[static_cast<std::size_t>(i)];
        const int axis = edge / 4;
        const int corner = LowerEnd(edge);
        Vector3f& point = points[i];
        point = {(corner & 1) != 0 ? m_high.x : m_low.x, (corner & 2) != 0 ? m_high.y : m_low.y,
                 (corner & 4) != 0 ? m_high.z : m_low.z};
        const float* low = m_low;
        const float* high = m_high;
        float* coordinate = point;
        // Where rounding carries it off the edge, it stops at the end.
        coordinate[axis] = std::max(
            low[axis], std::min(high[axis], static_cast<float>(plane * m_scale[axis] + m_offset[axis][edge % 4])));
    }
    return cycle.count;
}

double PolygonArea(const Vector3f* points, int count) {
    Vector3f sum(0.0F, 0.0F, 0.0F);
    for (int i = 2; i < count; ++i) {
        sum += CrossProduct(points[i - 1] - points[0], points[i] - points[0]);
    }
    return 0.5 * static_cast<double>(Length(sum));
}

} // namespace KOVA::Quorvex
