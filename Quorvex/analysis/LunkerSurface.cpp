#include <Quorvex/analysis/LunkerSurface.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include <Quorvex/analysis/CubeCases.h>
#include <Quorvex/analysis/LunkerRows.h>
#include <Quorvex/analysis/SharedProgress.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex::lunker {

namespace {

constexpr unsigned int c_triangleMode = 4; // OpenGL's

// Layers of cubes of one group, made by one thread.
struct Piece {
    std::uint32_t group;
    std::int32_t firstLayer;
    std::int32_t endLayer;
    std::uint64_t triangles;     // of the piece
    std::uint64_t firstTriangle; // of the mesh
};

// A group has pieces in the order of their layers; several pieces of small groups are work for a thread together.
struct Pieces {
    std::vector<Piece> pieces;
    std::vector<std::size_t> firstOfBatch; // and the number of pieces at the end
};

struct Box {
    static constexpr float most = std::numeric_limits<float>::max();
    Vector3f low{most, most, most};
    Vector3f high{-most, -most, -most};

    void Add(const Vector3f& newLow, const Vector3f& newHigh) {
        low = Vector3f(std::min(low.x, newLow.x), std::min(low.y, newLow.y), std::min(low.z, newLow.z));
        high = Vector3f(std::max(high.x, newHigh.x), std::max(high.y, newHigh.y), std::max(high.z, newHigh.z));
    }
};

class Surface {
public:
    Surface(const GroupedRuns& grouped, const VolumeData& data)
        : m_grouped(grouped), m_width(static_cast<std::int32_t>(data.getDimX())),
          m_lastY(static_cast<std::int32_t>(data.getDimY()) - 1),
          m_lastZ(static_cast<std::int32_t>(data.getDimZ()) - 1) {}

    Pieces Cut(std::size_t pieceRuns) const {
        Pieces cut;
        std::size_t runs = pieceRuns; // in the batch: the first group begins one
        for (std::size_t g = 0; g < m_grouped.groups.size(); ++g) {
            const RunRange range = RunsOf(g);
            const auto count = static_cast<std::size_t>(range.end - range.begin);
            if (runs + count > pieceRuns) {
                cut.firstOfBatch.push_back(cut.pieces.size());
                runs = 0;
            }
            runs += count;
            CutGroup(g, pieceRuns, cut);
        }
        cut.firstOfBatch.push_back(cut.pieces.size());
        return cut;
    }

    // visit(x, y, z, count, corners) for the cubes of a piece that have triangles, in scan order.
    template <class Visit> void Walk(const Piece& piece, Visit&& visit) const {
        RowWalk walk(RunsOf(piece.group), piece.firstLayer, piece.endLayer);
        while (walk.Advance()) {
            if (walk.Y() >= 0 && walk.Y() < m_lastY) {
                SweepRow(walk.Rows(), m_width, [&](std::int32_t x, std::int32_t count, unsigned int corners) {
                    visit(x, walk.Y(), walk.Z(), count, corners);
                });
            }
        }
    }

private:
    RunRange RunsOf(std::size_t group) const {
        return {m_grouped.runs.data() + m_grouped.first[group], m_grouped.runs.data() + m_grouped.first[group + 1]};
    }

    // A group has voxels in every slice from its first to its last.
    void CutGroup(std::size_t g, std::size_t pieceRuns, Pieces& cut) const {
        const RunRange range = RunsOf(g);
        const std::int32_t last = std::min(m_grouped.groups[g].high.z, m_lastZ - 1);
        std::int32_t layer = std::max(m_grouped.groups[g].low.z - 1, 0);
        while (layer <= last) {
            if (cut.pieces.size() > cut.firstOfBatch.back() && layer > std::max(m_grouped.groups[g].low.z - 1, 0)) {
                cut.firstOfBatch.push_back(cut.pieces.size());
            }
            const Run* const first =
                std::partition_point(range.begin, range.end, [layer](const Run& run) { return run.z <= layer; });
            const bool isRest = static_cast<std::size_t>(range.end - first) <= pieceRuns;
            const std::int32_t end = isRest ? last + 1 : std::min(std::max(first[pieceRuns].z, layer + 1), last + 1);
            cut.pieces.push_back({static_cast<std::uint32_t>(g), layer, end, 0, 0});
            layer = end;
        }
    }

    const GroupedRuns& m_grouped;
    std::int32_t m_width;
    std::int32_t m_lastY;
    std::int32_t m_lastZ;
};

// Calls body(piece) for all pieces, on several threads.
template <class Body>
void ForEachPiece(Pieces& cut, const Work& work, const std::function<void(double)>& progress, Body&& body) {
    const std::size_t batches = cut.firstOfBatch.size() - 1;
    SharedProgress shared(progress, batches);
    ParallelFor(
        batches,
        [&](std::size_t batch) {
            for (std::size_t i = cut.firstOfBatch[batch]; i < cut.firstOfBatch[batch + 1]; ++i) {
                body(i);
            }
            shared.Advance();
        },
        work.threads);
}

std::uint64_t CountTriangles(const Surface& surface, const Piece& piece) {
    const std::array<cubes::Case, 256>& cases = cubes::Cases();
    std::uint64_t triangles = 0;
    surface.Walk(piece, [&](std::int32_t, std::int32_t, std::int32_t, std::int32_t count, unsigned int corners) {
        triangles += cases[corners].triangles * static_cast<std::uint64_t>(count);
    });
    return triangles;
}

// Gives the pieces and groups their places in the mesh. The number of all triangles.
std::uint64_t Place(std::vector<Piece>& pieces, std::vector<LunkerGroup>& groups) {
    std::uint64_t triangles = 0;
    for (const Piece& piece : pieces) {
        triangles += piece.triangles;
    }
    if (triangles > std::numeric_limits<std::uint32_t>::max() / 3) {
        throw std::bad_array_new_length();
    }
    std::uint64_t next = 0;
    std::size_t piece = 0;
    for (std::size_t g = 0; g < groups.size(); ++g) {
        groups[g].firstTriangle = static_cast<std::uint32_t>(next);
        for (; piece < pieces.size() && pieces[piece].group == g; ++piece) {
            pieces[piece].firstTriangle = next;
            next += pieces[piece].triangles;
        }
        groups[g].triangles = static_cast<std::uint32_t>(next) - groups[g].firstTriangle;
    }
    return triangles;
}

// Where the next triangle goes.
class Pen {
public:
    Pen(MeshData& data, std::uint64_t triangle)
        : m_corners(data.GetVertexArray() + triangle * 3), m_normals(data.GetNormalArray() + triangle * 3),
          m_indices(data.GetIndexArray() + triangle * 3), m_index(static_cast<unsigned int>(triangle * 3)) {}

    void Put(const cubes::Case& cube, const Vector3f& origin) {
        const std::size_t vertices = cube.triangles * 3;
        for (std::size_t i = 0; i < vertices; i += 3) { // by threes, which the compiler takes together
            m_corners[i] = cube.corners[i] + origin;
            m_corners[i + 1] = cube.corners[i + 1] + origin;
            m_corners[i + 2] = cube.corners[i + 2] + origin;
        }
        std::copy_n(cube.normals.data(), vertices, m_normals);
        for (std::size_t i = 0; i < vertices; ++i) {
            m_indices[i] = m_index + static_cast<unsigned int>(i);
        }
        m_corners += vertices;
        m_normals += vertices;
        m_indices += vertices;
        m_index += static_cast<unsigned int>(vertices);
    }

private:
    Vector3f* m_corners;
    Vector3f* m_normals;
    unsigned int* m_indices;
    unsigned int m_index;
};

Box WriteTriangles(const Surface& surface, const Piece& piece, MeshData& data) {
    const std::array<cubes::Case, 256>& cases = cubes::Cases();
    Pen pen(data, piece.firstTriangle);
    Box box;
    surface.Walk(piece, [&](std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t count, unsigned int corners) {
        const cubes::Case& cube = cases[corners];
        const auto at = [y, z](std::int32_t along) {
            return Vector3f(static_cast<float>(along), static_cast<float>(y), static_cast<float>(z));
        };
        for (std::int32_t i = 0; i < count; ++i) {
            pen.Put(cube, at(x + i));
        }
        box.Add(cube.low + at(x), cube.high + at(x + count - 1));
    });
    return box;
}

void SetBox(MeshData& data, const std::vector<Box>& boxes) {
    Box all;
    for (const Box& box : boxes) {
        all.Add(box.low, box.high);
    }
    data.SetBB0(all.low);
    data.SetBB1(all.high);
    data.SetCenter((all.low + all.high) * 0.5F);
    data.SetRadius(0.5F * Length(all.low - all.high));
}

// Coordinates beyond this are no longer exact, nor are the prepared normals then.
bool AreHalvesExact(const VolumeData& data) {
    constexpr std::size_t most = std::size_t{1} << 23U;
    return std::max({data.getDimX(), data.getDimY(), data.getDimZ()}) <= most;
}

} // namespace

std::unique_ptr<MeshData> MakeSurface(GroupedRuns& grouped, const VolumeData& data, const Work& work,
                                      const std::function<void(double)>& progress) {
    const Surface surface(grouped, data);
    Pieces cut = surface.Cut(work.pieceRuns);
    ForEachPiece(cut, work, nullptr,
                 [&](std::size_t i) { cut.pieces[i].triangles = CountTriangles(surface, cut.pieces[i]); });
    const std::uint64_t triangles = Place(cut.pieces, grouped.groups);
    if (triangles == 0) {
        return std::make_unique<MeshData>(0, c_triangleMode);
    }
    const auto vertices = static_cast<unsigned int>(triangles * 3);
    auto mesh = std::make_unique<MeshData>(vertices, vertices, c_triangleMode);
    mesh->CreateVertexArray(nullptr);
    mesh->CreateNormalArray(nullptr);
    mesh->CreateIndexArray(nullptr);
    std::vector<Box> boxes(cut.pieces.size());
    ForEachPiece(cut, work, progress, [&](std::size_t i) { boxes[i] = WriteTriangles(surface, cut.pieces[i], *mesh); });
    SetBox(*mesh, boxes);
    if (!AreHalvesExact(data)) {
        mesh->ComputeNormals(true);
    }
    return mesh;
}

} // namespace KOVA::Quorvex::lunker
