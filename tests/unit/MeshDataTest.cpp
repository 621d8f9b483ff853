#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshData.h>

#include "ExpectNear.h"

// Geometry in client arrays, without a GL context.

namespace KOVA::Quorvex {
namespace {

ColorRGB* const s_noColors = nullptr;

// A tetrahedron in the caller's own arrays.
struct Arrays {
    std::vector<Vector3f> vertices{{0, 0, 0}, {2, 0, 0}, {0, 4, 0}, {0, 0, 6}};
    std::vector<Vector3f> normals{{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    std::vector<ColorRGB> rgb{{0.1F, 0.2F, 0.3F}, {0, 0, 0}, {0, 0, 0}, {0.7F, 0.8F, 0.9F}};
    std::vector<ColorRGBA> rgba{{0, 0, 0, 0}, {0.1F, 0.2F, 0.3F, 0.4F}, {0, 0, 0}, {0, 0, 0}};
    std::vector<unsigned int> indices{0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3};

    MeshData WithRGB() { return {4, vertices.data(), normals.data(), rgb.data(), 12, indices.data(), 4}; }
};

TEST(MeshData, CountsAreStoredAndArraysMadeLater) {
    MeshData data(5, 7, 1);
    EXPECT_EQ(data.GetInstanceCounter(), 1U);
    EXPECT_EQ(data.GetMode(), 1U);
    EXPECT_EQ(data.GetNumIndices(), 7U);
    EXPECT_EQ(data.GetNumVertices() + data.GetNumNormals() + data.GetNumColors(), 0U);
    EXPECT_FALSE(data.UpdateMetrics());

    EXPECT_TRUE(data.CreateVertexArray(nullptr));
    EXPECT_EQ(data.GetNumVertices(), 5U);
    EXPECT_EQ(data.GetNumNormals() + data.GetNumColors(), 0U);
    EXPECT_TRUE(data.CreateNormalArray(nullptr));
    EXPECT_TRUE(data.CreateIndexArray(nullptr));
    EXPECT_TRUE(data.CreateColorArray(4, nullptr));
    EXPECT_EQ(data.GetNumNormals(), 5U);
    EXPECT_EQ(data.GetNumColors(), 5U);
    data.SetVertex(4, Vector3f(1, 2, 3));
    data.SetNormal(4, Vector3f(0, 1, 0));
    data.SetIndex(6, 4);
    data.SetColor(4, ColorRGBA(0.1F, 0.2F, 0.3F, 0.4F));
    EXPECT_EQ(data.GetVertex(data.GetIndex(6)), Vector3f(1, 2, 3));
    EXPECT_EQ(data.GetNormal(4), Vector3f(0, 1, 0));

    const MeshData empty;
    EXPECT_EQ(empty.GetMode(), 4U);
    EXPECT_EQ(empty.GetNumVertices() + empty.GetNumIndices(), 0U);
    EXPECT_EQ(MeshData(3, 6).GetNumIndices(), 0U);
}

TEST(MeshData, AdoptedArraysStayTheCallers) {
    Arrays arrays;
    {
        MeshData data = arrays.WithRGB();
        EXPECT_EQ(data.GetVertexArray(), arrays.vertices.data());
        EXPECT_EQ(data.GetNumColors(), 4U);
        EXPECT_EQ(data.GetNumIndices(), 12U);
        data.SetVertex(0, Vector3f(9, 9, 9));
        EXPECT_EQ(arrays.vertices[0], Vector3f(9, 9, 9));

        MeshData noNormals(4, arrays.vertices.data(), nullptr, arrays.rgba.data(), 4);
        EXPECT_EQ(noNormals.GetNumNormals(), 0U);
        EXPECT_EQ(noNormals.GetNumIndices(), 0U);
        EXPECT_TRUE(noNormals.CreateNormalArray(arrays.normals.data()));
        EXPECT_EQ(noNormals.GetNormalArray(), arrays.normals.data());
        EXPECT_TRUE(noNormals.CreateColorArray(4, &arrays.rgba[0].r));
    } // a sanitizer sees arrays that are freed twice or not at all
    EXPECT_EQ(arrays.vertices[1], Vector3f(2, 0, 0));

    MeshData noColors(4, arrays.vertices.data(), nullptr, s_noColors, 4);
    EXPECT_EQ(noColors.GetNumColors(), 0U);
    EXPECT_TRUE(noColors.CreateColorArray(4, nullptr)); // the layout of colours that are not there binds nobody
}

TEST(MeshData, AnArrayThatExistsIsKept) {
    Arrays arrays;
    Arrays others;
    MeshData data = arrays.WithRGB();
    EXPECT_TRUE(data.CreateVertexArray(others.vertices.data()));
    EXPECT_TRUE(data.CreateNormalArray(others.normals.data()));
    EXPECT_TRUE(data.CreateNormalArray(nullptr));
    EXPECT_TRUE(data.CreateIndexArray(others.indices.data()));
    EXPECT_EQ(data.GetVertexArray(), arrays.vertices.data());
    EXPECT_EQ(data.GetNormalArray(), arrays.normals.data());
    EXPECT_EQ(data.GetIndexArray(), arrays.indices.data());

    EXPECT_TRUE(data.CreateColorArray(3, nullptr));
    EXPECT_TRUE(data.CreateColorArray(3, &arrays.rgb[0].r));
    EXPECT_FALSE(data.CreateColorArray(3, &others.rgb[0].r));
    EXPECT_FALSE(data.CreateColorArray(4, nullptr));
    EXPECT_FALSE(data.CreateColorArray(4, &arrays.rgb[0].r));
    ColorRGB color(0, 0, 0);
    EXPECT_TRUE(data.GetColor(3, &color)); // still RGB
    EXPECT_EQ(color, arrays.rgb[3]);
}

TEST(MeshData, ColorsAreAccessedInTheirOwnLayoutOnly) {
    Arrays arrays;
    MeshData rgb = arrays.WithRGB();
    MeshData rgba(4, arrays.vertices.data(), nullptr, arrays.rgba.data(), 4);
    ColorRGB three(9, 9, 9);
    ColorRGBA four(9, 9, 9, 9);
    EXPECT_FALSE(rgb.GetColor(0, &four));
    EXPECT_FALSE(rgba.GetColor(1, &three));
    EXPECT_EQ(three, ColorRGB(9, 9, 9));
    EXPECT_EQ(four, ColorRGBA(9, 9, 9, 9));
    EXPECT_TRUE(rgba.GetColor(1, &four));
    EXPECT_EQ(four, ColorRGBA(0.1F, 0.2F, 0.3F, 0.4F));

    rgb.SetColor(1, ColorRGBA(1, 1, 1, 1));
    rgba.SetColor(2, ColorRGB(1, 1, 1));
    EXPECT_EQ(arrays.rgb[1], ColorRGB(0, 0, 0));
    EXPECT_EQ(arrays.rgba[2], ColorRGBA(0, 0, 0));
    rgb.SetColor(2, ColorRGB(0.5F, 0.25F, 1));
    EXPECT_EQ(arrays.rgb[2], ColorRGB(0.5F, 0.25F, 1));

    MeshData none(4, 4);
    none.SetColor(0, ColorRGB(1, 1, 1));
    EXPECT_FALSE(none.GetColor(0, &three));
}

void ExpectEqualArrays(const MeshData& copy, const MeshData& source) {
    ASSERT_EQ(copy.GetNumVertices(), source.GetNumVertices());
    ASSERT_EQ(copy.GetNumNormals(), source.GetNumNormals());
    ASSERT_EQ(copy.GetNumIndices(), source.GetNumIndices());
    ASSERT_EQ(copy.GetNumColors(), source.GetNumColors());
    EXPECT_EQ(copy.GetMode(), source.GetMode());
    for (unsigned int i = 0; i < source.GetNumVertices(); ++i) {
        ColorRGB color(0, 0, 0);
        ColorRGB copied(1, 1, 1);
        EXPECT_EQ(copy.GetVertex(i), source.GetVertex(i));
        EXPECT_EQ(copy.GetNormal(i), source.GetNormal(i));
        EXPECT_TRUE(source.GetColor(i, &color) && copy.GetColor(i, &copied));
        EXPECT_EQ(copied, color);
    }
    for (unsigned int i = 0; i < source.GetNumIndices(); ++i) {
        EXPECT_EQ(copy.GetIndex(i), source.GetIndex(i));
    }
}

TEST(MeshData, CopiesAreDeepAndTheirOwn) {
    Arrays arrays;
    auto source = std::make_unique<MeshData>(arrays.WithRGB());
    source->SetMode(5);
    source->UpdateMetrics();
    source->IncInstanceCounter();
    MeshData copy(*source);
    EXPECT_EQ(copy.GetInstanceCounter(), 1U);
    EXPECT_EQ(copy.GetBB1(), Vector3f(2, 4, 6));
    EXPECT_EQ(copy.GetRadius(), source->GetRadius());
    ExpectEqualArrays(copy, *source);
    EXPECT_NE(copy.GetVertexArray(), source->GetVertexArray());

    copy.SetVertex(0, Vector3f(7, 7, 7));
    EXPECT_EQ(source->GetVertex(0), Vector3f(0, 0, 0));
    source->DecInstanceCounter();
    source.reset();
    EXPECT_EQ(copy.GetVertex(3), Vector3f(0, 0, 6));

    const MeshData bare(7, 3, 1); // counts without arrays
    const MeshData bareCopy(bare);
    EXPECT_EQ(bareCopy.GetNumIndices(), 3U);
    EXPECT_EQ(bareCopy.GetMode(), 1U);
    EXPECT_EQ(bareCopy.GetVertexArray(), nullptr);
}

TEST(MeshData, AssignmentReplacesTheContentsButNotTheSharing) {
    Arrays arrays;
    const MeshData source = arrays.WithRGB();
    MeshData target(100, 300, 1);
    target.CreateVertexArray(nullptr);
    target.CreateColorArray(4, nullptr);
    target.CreateIndexArray(nullptr);
    target.IncInstanceCounter();
    target = source;
    ExpectEqualArrays(target, source);
    EXPECT_EQ(target.GetInstanceCounter(), 2U); // the object on it is still there

    const MeshData& itself = target;
    target = itself;
    ExpectEqualArrays(target, source);
    target = MeshData();
    EXPECT_EQ(target.GetVertexArray(), nullptr);
    EXPECT_EQ(target.GetNumIndices(), 0U);
    target.DecInstanceCounter();
}

TEST(MeshData, ComparisonIsNotOffered) {
    const MeshData a(1, 4);
    const MeshData b(2, 1);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a != a);
}

TEST(MeshData, SmoothNormalsWeighEveryFaceAlike) {
    Arrays arrays;
    MeshData data(4, arrays.vertices.data(), nullptr, s_noColors, 12, arrays.indices.data(), 4);
    EXPECT_TRUE(data.ComputeNormals(true));
    ASSERT_EQ(data.GetNumNormals(), 4U);
    // Three faces of the tetrahedron lie in the coordinate planes; the fourth's normal is (1/2, 1/4, 1/6).
    const Vector3f slope = Normalize(Vector3f(6, 3, 2));
    ExpectNear(data.GetNormal(0), Normalize(Vector3f(-1, -1, -1)), 1e-6F);
    ExpectNear(data.GetNormal(1), Normalize(slope + Vector3f(0, -1, -1)), 1e-6F);
    ExpectNear(data.GetNormal(3), Normalize(slope + Vector3f(-1, -1, 0)), 1e-6F);

    const std::array<Vector3f, 4> first = {data.GetNormal(0), data.GetNormal(1), data.GetNormal(2), data.GetNormal(3)};
    EXPECT_TRUE(data.ComputeNormals(false)); // starts anew and reuses the array
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_EQ(data.GetNormal(i), first[i]);
    }
}

TEST(MeshData, NormalsOfIncompleteAndDegenerateMeshes) {
    Arrays arrays;
    MeshData withoutIndices(4, arrays.vertices.data(), arrays.normals.data(), arrays.rgb.data(), 4);
    EXPECT_TRUE(withoutIndices.ComputeNormals(true));
    EXPECT_EQ(arrays.normals[0], Vector3f(0, 0, -1));
    MeshData withoutVertices(4, 12, 4);
    withoutVertices.CreateIndexArray(arrays.indices.data());
    EXPECT_TRUE(withoutVertices.ComputeNormals(true));
    EXPECT_EQ(withoutVertices.GetNumNormals(), 0U);

    // Two indices too many are no triangle, and vertex 3 belongs to none.
    unsigned int indices[] = {0, 1, 2, 3, 3};
    MeshData loose(4, arrays.vertices.data(), arrays.normals.data(), arrays.rgb.data(), 5, indices, 4);
    EXPECT_TRUE(loose.ComputeNormals(true));
    EXPECT_EQ(loose.GetNormal(0), Vector3f(0, 0, 1));
    EXPECT_TRUE(std::isnan(loose.GetNormal(3).x));
    MeshData single(4, arrays.vertices.data(), arrays.normals.data(), arrays.rgb.data(), 1, indices, 4);
    EXPECT_TRUE(single.ComputeNormals(true));
    unsigned int degenerate[] = {0, 1, 2, 0, 3, 3};
    MeshData spoilt(4, arrays.vertices.data(), arrays.normals.data(), arrays.rgb.data(), 6, degenerate, 4);
    EXPECT_TRUE(spoilt.ComputeNormals(true));
    EXPECT_TRUE(std::isnan(spoilt.GetNormal(0).z));
    EXPECT_EQ(spoilt.GetNormal(1), Vector3f(0, 0, 1));
}

TEST(MeshData, MetricsFollowTheVertices) {
    Arrays arrays;
    MeshData data = arrays.WithRGB();
    data.SetVertex(2, Vector3f(-2, 4, -1));
    EXPECT_TRUE(data.UpdateMetrics());
    EXPECT_EQ(data.GetBB0(), Vector3f(-2, 0, -1));
    EXPECT_EQ(data.GetBB1(), Vector3f(2, 4, 6));
    EXPECT_EQ(data.GetCenter(), Vector3f(0, 2, 2.5F));
    EXPECT_EQ(data.GetRadius(), 4.5F); // half of the diagonal (4, 4, 7)

    data.Move(Vector3f(10, -20, 30));
    EXPECT_EQ(data.GetVertex(2), Vector3f(8, -16, 29));
    EXPECT_EQ(data.GetBB0(), Vector3f(8, -20, 29));
    EXPECT_EQ(data.GetBB1(), Vector3f(12, -16, 36));
    EXPECT_EQ(data.GetCenter(), Vector3f(10, -18, 32.5F));
    EXPECT_EQ(data.GetRadius(), 4.5F);

    MeshData nothing(0, 4);
    nothing.CreateVertexArray(nullptr);
    EXPECT_TRUE(nothing.UpdateMetrics()); // there is no vertex 0 to read
    MeshData noArray(3, 4);
    noArray.SetBB0(Vector3f(1, 1, 1));
    noArray.Move(Vector3f(1, 1, 1));
    EXPECT_EQ(noArray.GetBB0(), Vector3f(1, 1, 1));
}

TEST(MeshData, UpdateWithoutBuffersOnlyMeasures) {
    Arrays arrays;
    MeshData data = arrays.WithRGB();
    const auto unknown = static_cast<STORAGE>(1);
    EXPECT_FALSE(data.Update(unknown));
    EXPECT_FALSE(data.UpdateVertexArray(unknown) || data.UpdateNormalArray(unknown));
    EXPECT_FALSE(data.UpdateColorArray(unknown) || data.UpdateIndexArray(unknown));
    EXPECT_EQ(data.GetRadius(), 0.0F);
    EXPECT_TRUE(data.Update(STORAGE_VBO));
    EXPECT_EQ(data.GetBB1(), Vector3f(2, 4, 6));
    EXPECT_TRUE(data.UpdateColorArray(STORAGE_VBO) && data.UpdateIndexArray(STORAGE_VBO));

    MeshData bare(4, 4);
    EXPECT_FALSE(bare.UpdateVertexArray(STORAGE_VBO) || bare.UpdateNormalArray(STORAGE_VBO));
    EXPECT_FALSE(bare.UpdateColorArray(STORAGE_VBO) || bare.UpdateIndexArray(STORAGE_VBO));
    EXPECT_TRUE(bare.Update(STORAGE_VBO));
}

} // namespace
} // namespace KOVA::Quorvex
