#include <cli/ProgressBar.h>
#include <cli/Scene.h>
#include <shared/MeshSummary.h>

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include <shared/Failure.h>

#include "Programs.h"

namespace KOVA::Quorvex::cli {
namespace {

using testing_cli::BoxSurface;
using testing_cli::Folder;
using testing_cli::WriteBinary;

MeshSummary SummaryOf(std::vector<Vector3f> corners, std::vector<Vector3f> normals) {
    const MeshData data(static_cast<unsigned int>(corners.size()), corners.data(), normals.data(),
                        static_cast<ColorRGB*>(nullptr), 4);
    return Summarize(data);
}

TEST(SummaryTest, CountsDegenerateTrianglesAndInvertedNormals) {
    const Vector3f o(0, 0, 0);
    const Vector3f x(1, 0, 0);
    const Vector3f y(0, 1, 0);
    const Vector3f up(0, 0, 1);
    const Vector3f down(0, 0, -1);
    // Good; normal inverted; two corners alike; on a line whose coordinates are no binary fractions; small but a
    // triangle; large, with products beyond the range of float.
    const MeshSummary summary = SummaryOf({o,
                                           x,
                                           y, //
                                           o,
                                           x,
                                           y, //
                                           o,
                                           x,
                                           x, //
                                           o,
                                           {0.1F, 0.2F, 0.3F},
                                           {0.2F, 0.4F, 0.6F}, //
                                           o,
                                           {1e-20F, 0, 0},
                                           {0, 1e-20F, 0}, //
                                           o,
                                           {1e30F, 0, 0},
                                           {0, 1e30F, 0}},                                       //
                                          {up, up, up, down, down, down, up, up, up, up, up, up, //
                                           up, up, up, up, up, up});
    EXPECT_EQ(summary.triangles, 6U);
    EXPECT_EQ(summary.vertices, 18U);
    EXPECT_EQ(summary.degenerateTriangles, 2U);
    EXPECT_EQ(summary.invertedNormals, 1U);
}

TEST(SummaryTest, BoxCentreAndRadius) {
    const Vector3f n(0, 0, 1);
    const MeshSummary summary = SummaryOf({{1, 2, 3}, {4, 2, 3}, {1, 6, 15}}, {n, n, n});
    EXPECT_EQ(summary.low, (std::array<float, 3>{1, 2, 3}));
    EXPECT_EQ(summary.high, (std::array<float, 3>{4, 6, 15}));
    EXPECT_EQ(summary.size, (std::array<float, 3>{3, 4, 12}));
    EXPECT_EQ(summary.center, (std::array<float, 3>{2.5F, 4, 9}));
    EXPECT_FLOAT_EQ(summary.radius, 6.5F);
    EXPECT_TRUE(std::isnan(Summarize(MeshData()).low[0]));
}

// The second file's box begins inside the first one's and ends far beyond it.
TEST(SceneTest, TheBoxIsTheUnionOfAllFilesBroughtToRadiusOne) {
    const Folder folder;
    ProgressBar progress;
    const Scene scene = LoadScene({WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1})),
                                   WriteBinary(folder.Path("b.stl"), BoxSurface({0.5F, 0.5F, 0.5F}, {7, 5, 3}))},
                                  {}, progress);
    EXPECT_NEAR(scene.box.Radius(), 1.0, 1e-6);
    const double unit = 2.0 / std::sqrt(49.0 + 25.0 + 9.0);
    EXPECT_NEAR(scene.box.high[0], 3.5 * unit, 1e-6);
    EXPECT_NEAR(scene.box.low[1], -2.5 * unit, 1e-6);
    EXPECT_NEAR(scene.box.high[2], 1.5 * unit, 1e-6);
    ASSERT_EQ(scene.meshes.size(), 2U);
    const Vector3f low = scene.meshes[0].GetData().GetBB0();
    EXPECT_NEAR(low.x, scene.box.low[0], 1e-6);
    EXPECT_NE(scene.meshes[0].GetAttribute().GetColor(), scene.meshes[1].GetAttribute().GetColor());
}

TEST(SceneTest, PartsOfAnySizeAndPlaceKeepTheirShape) {
    const Folder folder;
    ProgressBar progress;
    for (const float size : {1e-25F, 1.0F, 1e37F}) {
        const Scene scene =
            LoadScene({WriteBinary(folder.Path("a.stl"), BoxSurface({-size, -size, size}, {size, size, 3 * size}))}, {},
                      progress);
        EXPECT_NEAR(scene.box.Radius(), 1.0, 1e-6) << size;
        EXPECT_NEAR(scene.box.high[2], 1.0 / std::sqrt(3.0), 1e-6) << size;
    }
}

} // namespace
} // namespace KOVA::Quorvex::cli
