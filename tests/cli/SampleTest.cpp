// What comes with the programs: the sample parts and the headless example.

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/volume/VolumeReader.h>

#include "Programs.h"

namespace testing_cli {
namespace {

using KOVA::Quorvex::Mesh;
using KOVA::Quorvex::MeshData;
using KOVA::Quorvex::MeshReader;
using KOVA::Quorvex::Vector3f;

using Corner = std::array<float, 3>;
Corner CornerOf(const MeshData& data, unsigned int i) {
    const Vector3f v = data.GetVertex(i);
    return {v.x + 0.0F, v.y + 0.0F, v.z + 0.0F}; // no negative zeros
}

TEST(SampleTest, TheSurfaceIsClosedAndTurnsOutwards) {
    ASSERT_LT(std::filesystem::file_size(QUORVEX_SAMPLE), 300000U);
    const Mesh mesh = MeshReader::ReadSTL(QUORVEX_SAMPLE);
    ASSERT_EQ(MeshReader::GetError(), KOVA::Quorvex::MR_NO_ERROR);
    const MeshData& data = mesh.GetData();
    ASSERT_GT(data.GetNumVertices(), 3000U);

    std::map<std::pair<Corner, Corner>, int> edges; // by direction: each must have its opposite
    double volume = 0.0;
    for (unsigned int i = 0; i < data.GetNumVertices(); i += 3) {
        const std::array<Corner, 3> c{CornerOf(data, i), CornerOf(data, i + 1), CornerOf(data, i + 2)};
        for (std::size_t k = 0; k < 3; ++k) {
            ++edges[{c[k], c[(k + 1) % 3]}];
        }
        const auto product = [&c](std::size_t x, std::size_t y, std::size_t z) {
            return static_cast<double>(c[0][x]) * (static_cast<double>(c[1][y]) * static_cast<double>(c[2][z]) -
                                                   static_cast<double>(c[1][z]) * static_cast<double>(c[2][y]));
        };
        volume += (product(0, 1, 2) + product(1, 2, 0) + product(2, 0, 1)) / 6.0;
    }
    for (const auto& [edge, count] : edges) {
        const auto opposite = edges.find({edge.second, edge.first});
        ASSERT_EQ(count, 1);
        ASSERT_NE(opposite, edges.end());
    }
    // A plate of radius 60 and thickness 10 with a hub of 22 and a bore of 17, less bolt holes and bevels.
    EXPECT_GT(volume, 95000.0);
    EXPECT_LT(volume, 120000.0);
}

TEST(SampleTest, TheVolumeIsWhatItsProgramMakesAndItsPoresLieApart) {
    const Folder folder;
    const std::string made = folder.Path("made.rek");
    EXPECT_EQ(RunProgram(QUORVEX_MAKE_VOLUME_SAMPLE, {made}).code, 0);
    const auto bytes = [](const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(file), {}};
    };
    EXPECT_TRUE(bytes(made) == bytes(QUORVEX_VOLUME_SAMPLE));
    EXPECT_LT(std::filesystem::file_size(QUORVEX_VOLUME_SAMPLE), std::uintmax_t{1} << 20U);

    // Every pore is one group of marked voxels, joined at corners too, inside the material.
    const KOVA::Quorvex::Volume volume = KOVA::Quorvex::VolumeReader::ReadREK(made.c_str());
    KOVA::Quorvex::VolumeData& data = volume.GetData();
    int groups = 0;
    std::vector<std::array<long long, 3>> waiting;
    for (long long i = 0; i < 96 * 96 * 96; ++i) {
        waiting.assign(1, {i % 96, i / 96 % 96, i / 96 / 96});
        groups += data.getDataPtr()[i] == 255 ? 1 : 0;
        while (!waiting.empty()) {
            const auto [x, y, z] = waiting.back();
            waiting.pop_back();
            if (data.get(x, y, z) != 255) {
                continue;
            }
            data.getDataPtr()[(z * 96 + y) * 96 + x] = 1;
            for (int k = 0; k < 27; ++k) {
                waiting.push_back({x + k % 3 - 1, y + k / 3 % 3 - 1, z + k / 9 - 1});
                const auto [nx, ny, nz] = waiting.back();
                const int level = data.get(nx, ny, nz);
                ASSERT_TRUE(level == 1 || level > 70) << "a pore at the surface";
            }
        }
    }
    EXPECT_EQ(groups, 24);
}

#ifdef QUORVEX_HEADLESS
TEST(HeadlessExampleTest, DrawsAFileAndReportsFailures) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({10, 20, 30}, 5));
    const std::string bmp = folder.Path("a.bmp");
    const Outcome drawn = RunProgram(QUORVEX_HEADLESS, {stl, bmp});
    EXPECT_EQ(drawn.code, 0) << drawn.err;
    EXPECT_EQ(drawn.out + drawn.err, "");
    const Picture picture = ReadPicture(bmp);
    const Spot ball = Find(picture, [](const Pixel& p) { return p.r > 60 && p.Brightest() - p.Darkest() < 8; });
    EXPECT_NEAR(ball.Width(), ball.Height(), 4);
    EXPECT_GT(ball.Width(), 300);
    EXPECT_NEAR(ball.x, 0.0, 0.02);
    EXPECT_NEAR(ball.y, 0.0, 0.02);

    EXPECT_EQ(RunProgram(QUORVEX_HEADLESS, {stl}).code, 2);
    const Outcome missing = RunProgram(QUORVEX_HEADLESS, {folder.Path("none.stl"), bmp});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "headless: cannot read " + folder.Path("none.stl") + "\n");
    EXPECT_EQ(RunProgram(QUORVEX_HEADLESS, {stl, folder.Path("none/a.bmp")}).code, 1);
}
#endif

} // namespace
} // namespace testing_cli
