#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/analysis/CubeCases.h>
#include <Quorvex/analysis/LunkerSurface.h>

#include <tests/TestDirectory.h>

namespace {

using namespace KOVA::Quorvex;

using Corners = std::vector<Vector3f>;

struct Result {
    std::vector<LunkerGroup> groups;
    std::unique_ptr<MeshData> mesh;

    Corners All() const { return {mesh->GetVertexArray(), mesh->GetVertexArray() + mesh->GetNumVertices()}; }
    Corners Of(const LunkerGroup& group) const {
        const Vector3f* const first = mesh->GetVertexArray() + std::size_t{group.firstTriangle} * 3;
        return {first, first + std::size_t{group.triangles} * 3};
    }
};

Result Make(const VolumeData& data, const lunker::Work& work = {}) {
    lunker::GroupedRuns grouped = lunker::GroupRuns(lunker::FindRuns(data, work, nullptr));
    std::unique_ptr<MeshData> mesh = lunker::MakeSurface(grouped, data, work, nullptr);
    return {grouped.groups, std::move(mesh)};
}

std::unique_ptr<VolumeData> Empty(std::size_t x, std::size_t y, std::size_t z) {
    auto data = std::make_unique<VolumeData>();
    data->createData(x, y, z);
    return data;
}

// Lunkers of a density in values that are none, some of them special elsewhere.
std::unique_ptr<VolumeData> Noise(std::size_t x, std::size_t y, std::size_t z, double density, std::mt19937& random) {
    auto data = Empty(x, y, z);
    std::bernoulli_distribution isLunker(density);
    std::generate_n(data->getDataPtr(), x * y * z, [&] {
        constexpr unsigned char others[] = {0, 1, 64, 127, 128, 129, 254, 0};
        return isLunker(random) ? static_cast<unsigned char>(255) : others[random() % 8];
    });
    return data;
}

// What is asked for, word by word: a flood fill by voxels, and all cubes of each group's widened box.
class Plain {
public:
    explicit Plain(const VolumeData& data)
        : m_data(data), m_groupOf(data.getDimX() * data.getDimY() * data.getDimZ(), 0) {
        ForBox({0, 0, 0}, Dims() - Vector3i(1, 1, 1), [&](const Vector3i& v) {
            if (m_data.get(v.x, v.y, v.z) > 254 && At(v) == 0) {
                Fill(v);
            }
        });
    }

    std::vector<LunkerGroup> groups;
    Corners corners;

private:
    Vector3i Dims() const {
        return {static_cast<int>(m_data.getDimX()), static_cast<int>(m_data.getDimY()),
                static_cast<int>(m_data.getDimZ())};
    }

    template <class Visit> static void ForBox(const Vector3i& low, const Vector3i& high, Visit visit) {
        for (int z = low.z; z <= high.z; ++z) {
            for (int y = low.y; y <= high.y; ++y) {
                for (int x = low.x; x <= high.x; ++x) {
                    visit(Vector3i(x, y, z));
                }
            }
        }
    }

    // The group of a voxel, counted from 1.
    std::size_t& At(const Vector3i& v) {
        return m_groupOf[(static_cast<std::size_t>(v.z) * m_data.getDimY() + static_cast<std::size_t>(v.y)) *
                             m_data.getDimX() +
                         static_cast<std::size_t>(v.x)];
    }

    void Fill(const Vector3i& seed) {
        const std::size_t number = groups.size() + 1;
        LunkerGroup group{0, seed, seed, {0, 0, 0}, static_cast<std::uint32_t>(corners.size() / 3), 0};
        double sum[3] = {};
        std::deque<Vector3i> queue{seed};
        At(seed) = number;
        for (; !queue.empty(); queue.pop_front()) {
            const Vector3i v = queue.front();
            ++group.voxels;
            for (int axis = 0; axis < 3; ++axis) {
                group.low[axis] = std::min(group.low[axis], v[axis]);
                group.high[axis] = std::max(group.high[axis], v[axis]);
                sum[axis] += v[axis];
            }
            ForBox(v - Vector3i(1, 1, 1), v + Vector3i(1, 1, 1), [&](const Vector3i& w) {
                if (m_data.get(w.x, w.y, w.z) > 254 && At(w) == 0) {
                    At(w) = number;
                    queue.push_back(w);
                }
            });
        }
        for (int axis = 0; axis < 3; ++axis) {
            group.center[axis] = static_cast<float>(sum[axis] / static_cast<double>(group.voxels));
        }
        Vector3i low = group.low;
        Vector3i high = group.high;
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] -= low[axis] > 0 ? 1 : 0;
            high[axis] += high[axis] < Dims()[axis] - 1 ? 1 : 0;
        }
        ForBox(low, high - Vector3i(1, 1, 1), [&](const Vector3i& origin) {
            std::size_t inside = 0;
            for (int bit = 0; bit < 8; ++bit) {
                const Vector3i v = origin + Vector3i(bit >> 2, bit & 1, bit >> 1 & 1);
                inside |= At(v) == number ? std::size_t{1} << static_cast<unsigned int>(bit) : 0;
            }
            const cubes::Case& cube = cubes::Cases()[inside];
            for (std::size_t i = 0; i < cube.triangles * 3; ++i) {
                corners.push_back(cube.corners[i] + Vector3f(static_cast<float>(origin.x), static_cast<float>(origin.y),
                                                             static_cast<float>(origin.z)));
            }
        });
        group.triangles = static_cast<std::uint32_t>(corners.size() / 3) - group.firstTriangle;
        groups.push_back(group);
    }

    const VolumeData& m_data;
    std::vector<std::size_t> m_groupOf;
};

void ExpectSameGroups(const std::vector<LunkerGroup>& groups, const std::vector<LunkerGroup>& expected) {
    const auto all = [](const LunkerGroup& g) {
        return std::tuple(g.voxels, g.low.x, g.low.y, g.low.z, g.high.x, g.high.y, g.high.z, g.firstTriangle,
                          g.triangles);
    };
    ASSERT_EQ(groups.size(), expected.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        ASSERT_EQ(all(groups[i]), all(expected[i])) << i;
        ASSERT_LT(Length(groups[i].center - expected[i].center), 1e-5F) << i;
    }
}

bool TouchesBorder(const LunkerGroup& group, const VolumeData& data) {
    return group.low.x == 0 || group.low.y == 0 || group.low.z == 0 || group.high.x + 1 == data.getDimensionX() ||
           group.high.y + 1 == data.getDimensionY() || group.high.z + 1 == data.getDimensionZ();
}

// Every edge belongs to exactly two triangles, which run along it in opposite directions.
bool IsClosed(const Corners& corners) {
    const auto key = [](const Vector3f& v) { return std::tuple(v.x, v.y, v.z); };
    std::set<std::pair<std::tuple<float, float, float>, std::tuple<float, float, float>>> edges;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::size_t next = i % 3 == 2 ? i - 2 : i + 1;
        if (!edges.emplace(key(corners[i]), key(corners[next])).second) {
            return false;
        }
    }
    return std::all_of(edges.begin(), edges.end(), [&](const auto& edge) {
        return edges.count({edge.second, edge.first}) == 1;
    });
}

// Positive when the triangles are counter-clockwise from outside.
double EnclosedVolume(const Corners& corners) {
    double volume = 0.0;
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        volume += static_cast<double>(DotProduct(
            corners[i] - corners[0], CrossProduct(corners[i + 1] - corners[0], corners[i + 2] - corners[0])));
    }
    return volume / 6.0;
}

// What a mesh made of the triangles says of itself is what it says when everything is computed from its vertices.
void ExpectConsistent(const MeshData& mesh) {
    MeshData copy(mesh);
    copy.ComputeNormals(true);
    copy.UpdateMetrics();
    ASSERT_EQ(mesh.GetNumIndices(), mesh.GetNumVertices());
    for (unsigned int i = 0; i < mesh.GetNumIndices(); ++i) {
        ASSERT_EQ(mesh.GetIndex(i), i);
    }
    ASSERT_EQ(std::memcmp(mesh.GetNormalArray(), copy.GetNormalArray(), mesh.GetNumVertices() * sizeof(Vector3f)), 0);
    EXPECT_EQ(mesh.GetBB0(), copy.GetBB0());
    EXPECT_EQ(mesh.GetBB1(), copy.GetBB1());
    EXPECT_EQ(mesh.GetCenter(), copy.GetCenter());
    EXPECT_EQ(mesh.GetRadius(), copy.GetRadius());
}

TEST(LunkerTest, OneVoxelIsAnOctahedronAroundIt) {
    const auto data = Empty(5, 6, 7);
    data->set(2, 3, 4, 255);
    data->set(3, 3, 4, 127);
    data->set(1, 3, 4, 254);
    const Mesh mesh = data->TriangulateLunker();
    const MeshData& surface = mesh.GetData();
    ASSERT_EQ(surface.GetNumVertices(), 24U);
    EXPECT_EQ(surface.GetMode(), 4U);
    const Corners corners(surface.GetVertexArray(), surface.GetVertexArray() + 24);
    EXPECT_TRUE(IsClosed(corners));
    EXPECT_DOUBLE_EQ(EnclosedVolume(corners), 1.0 / 6.0);
    EXPECT_EQ(mesh.GetCenter(), Vector3f(2, 3, 4));
    EXPECT_EQ(mesh.GetBB0(), Vector3f(1.5F, 2.5F, 3.5F));
    EXPECT_EQ(mesh.GetRadius(), std::sqrt(0.75F));
    for (unsigned int i = 0; i < 24; ++i) {
        EXPECT_GT(DotProduct(surface.GetNormal(i), surface.GetVertex(i) - mesh.GetCenter()), 0.0F);
    }
    ExpectConsistent(surface);
    EXPECT_EQ(data->get(3, 3, 4), 127);

    data->clearData();
    const Mesh none = data->TriangulateLunker();
    EXPECT_EQ(none.GetData().GetNumVertices() + none.GetData().GetNumIndices(), 0U);
}

TEST(LunkerTest, GroupsAndTrianglesAreThoseOfAPlainSearchWhateverTheThreads) {
    std::mt19937 random(1);
    const lunker::Work works[] = {{}, {1, 1, 1}, {7, 3, 5}, {100, 20, 2}, {1000, 1, 3}};
    for (int run = 0; run < 150; ++run) {
        const auto size = [&] { return std::size_t{1} + random() % (run % 3 == 0 ? 4 : 22); };
        constexpr double densities[] = {0.01, 0.06, 0.2, 0.5, 0.9, 1.0};
        const auto data = Noise(size(), size(), size(), densities[run % 6], random);
        const Plain expected(*data);
        const Result result = Make(*data, works[run % 5]);
        ExpectSameGroups(result.groups, expected.groups);
        ASSERT_EQ(result.All(), expected.corners) << run;
        std::vector<LunkerGroup> groups = Lunkers::Find(*data);
        ASSERT_EQ(groups.size(), expected.groups.size());
        const Mesh mesh = Lunkers::Triangulate(*data, groups);
        ExpectSameGroups(groups, expected.groups);
        ASSERT_EQ(mesh.GetData().GetNumVertices(), expected.corners.size());
        if (!expected.corners.empty()) {
            ExpectConsistent(mesh.GetData());
        }
    }
}

TEST(LunkerTest, SurfacesAwayFromTheBorderEncloseTheirVoxels) {
    std::mt19937 random(2);
    for (const double density : {0.02, 0.08, 0.3, 0.5, 0.7, 0.97}) {
        const auto data = Noise(24, 20, 17, density, random);
        for (std::size_t i = 0; i < 24 * 20 * 17; ++i) { // a border without lunkers
            const std::size_t x = i % 24;
            const std::size_t y = i / 24 % 20;
            const std::size_t z = i / 480;
            if (density > 0.1 && (x * y * z == 0 || x == 23 || y == 19 || z == 16)) {
                data->set(x, y, z, 128);
            }
        }
        const Result result = Make(*data);
        int closed = 0;
        for (const LunkerGroup& group : result.groups) {
            const Corners corners = result.Of(group);
            const bool isOpen = TouchesBorder(group, *data);
            ASSERT_EQ(IsClosed(corners), !isOpen);
            if (!isOpen) {
                // The largest deviation that a cube can have is that of a single corner: 1/48 instead of 1/8.
                const auto voxels = static_cast<double>(group.voxels);
                ASSERT_NEAR(EnclosedVolume(corners), voxels, group.triangles * 5.0 / 48.0 + 1e-3);
                ASSERT_GT(EnclosedVolume(corners), voxels / 6.01);
                ++closed;
            }
        }
        EXPECT_GT(closed, 0) << density;
    }
}

TEST(LunkerTest, VoxelsThatTouchAnyhowAreOneGroup) {
    for (int way = 0; way < 27; ++way) {
        const auto data = Empty(6, 6, 6);
        const Vector3i d(way % 3 - 1, way / 3 % 3 - 1, way / 9 - 1);
        data->set(2, 2, 2, 255);
        data->set(static_cast<std::size_t>(2 + d.x), static_cast<std::size_t>(2 + d.y),
                  static_cast<std::size_t>(2 + d.z), 255);
        const Result result = Make(*data);
        ASSERT_EQ(result.groups.size(), 1U) << way;
        EXPECT_EQ(result.groups[0].voxels, way == 13 ? 1U : 2U);
        EXPECT_TRUE(IsClosed(result.All()));
        EXPECT_EQ(result.groups[0].center,
                  Vector3f(2.0F + static_cast<float>(d.x) / 2.0F, 2.0F + static_cast<float>(d.y) / 2.0F,
                           2.0F + static_cast<float>(d.z) / 2.0F));
    }
}

TEST(LunkerTest, WhatCannotBeTriangulatedIsThrown) {
    unsigned char voxels[8] = {};
    const auto textOf = [](const VolumeData& data) -> std::string {
        try {
            (void)data.TriangulateLunker();
        } catch (const char* text) {
            return text;
        } catch (const std::overflow_error& error) {
            return error.what();
        }
        return "";
    };
    const std::string blocks = "KOVA::Quorvex::Volume_Data::TriangulizeLunker";
    EXPECT_EQ(textOf(VolumeData(2, 2, 2, {voxels, voxels + 4}, {0, 1})), blocks);
    EXPECT_EQ(textOf(VolumeData()), blocks);
    const auto overflow = [](const std::string& value) {
        return "Couldn't cast " + value + " (64 bit unsigned integer) to 32 bit signed integer without loss of data!";
    };
    const std::size_t large = std::size_t{1} << 31U;
    EXPECT_EQ(textOf(VolumeData(2 * large, large, 2 * large + 1, {voxels}, {0})), overflow("4294967297"));
    EXPECT_EQ(textOf(VolumeData(2 * large, large, large - 1, {voxels}, {0})), overflow("2147483648"));
    EXPECT_EQ(textOf(VolumeData(2 * large, 1, 1, {voxels}, {0})), overflow("4294967296"));
    for (const auto& data : {Empty(0, 0, 0), Empty(0, 5, 5), Empty(5, 5, 0)}) {
        EXPECT_EQ(textOf(*data), "");
    }
    EXPECT_EQ(textOf(VolumeData(2, 2, 2, {voxels}, {0})), "");
}

// Halves can no longer be told from whole numbers there; the normals follow the corners as they are.
TEST(LunkerTest, CoordinatesThatFloatsRound) {
    const std::size_t width = (std::size_t{1} << 23U) + 4;
    const auto data = Empty(width, 2, 2);
    data->set(width - 3, 0, 0, 255);
    const Result result = Make(*data);
    ASSERT_EQ(result.groups.size(), 1U);
    EXPECT_EQ(result.groups[0].triangles, 2U);
    ExpectConsistent(*result.mesh);
}

TEST(LunkerTest, TheStlFileHoldsTheSameTriangles) {
    std::mt19937 random(3);
    const auto data = Noise(20, 20, 20, 0.1, random);
    const Mesh mesh = data->TriangulateLunker();
    const TestDirectory folder;
    const std::string path = folder.Name("lunker.stl");
    ASSERT_TRUE(MeshWriter::WriteSTLBinary(path.c_str(), mesh));
    const Mesh read = MeshReader::ReadSTL(path.c_str());
    const MeshData& a = mesh.GetData();
    const MeshData& b = read.GetData();
    ASSERT_EQ(a.GetNumVertices(), b.GetNumVertices());
    ASSERT_GT(a.GetNumVertices(), 0U);
    const std::size_t bytes = a.GetNumVertices() * sizeof(Vector3f);
    EXPECT_EQ(std::memcmp(a.GetVertexArray(), b.GetVertexArray(), bytes), 0);
    EXPECT_EQ(std::memcmp(a.GetNormalArray(), b.GetNormalArray(), bytes), 0);
}

TEST(LunkerTest, ProgressRunsToItsEnd) {
    std::mt19937 random(4);
    const auto data = Noise(60, 60, 60, 0.1, random);
    std::vector<double> told;
    std::vector<LunkerGroup> groups;
    (void)Lunkers::Triangulate(*data, groups, [&](double done) { told.push_back(done); });
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.back(), 1.0);
}

} // namespace
