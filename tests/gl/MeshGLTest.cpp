// Meshes on the graphics card and in the six display modes.

#include <set>

#include <Quorvex/core/OpenGL.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class MeshGLTest : public GlTest {
protected:
    static bool HasBuffers() { return Library::CheckGLExtension("GL_ARB_vertex_buffer_object"); }

    // What one mode makes of a mesh in a 100 x 100 picture of x, y = -2..2.
    static Picture DrawInMode(const Mesh& mesh, MeshAttribute::RenderMode mode) {
        FrameFixture f(100, 100);
        f.frame.Add(mesh)->GetAttribute().SetRenderMode(mode);
        return f.Draw();
    }
};

// Two triangles that share an edge: 4 vertices and 6 indices.
MeshData* MakeIndexedSquare() {
    auto* const data = new MeshData(4, 6, GL_TRIANGLES);
    data->CreateVertexArray(nullptr);
    data->CreateIndexArray(nullptr);
    data->CreateColorArray(3, nullptr);
    const Vector3f corners[] = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
    const unsigned int indices[] = {0, 1, 2, 0, 2, 3};
    for (unsigned int i = 0; i < 4; ++i) {
        data->SetVertex(i, corners[i]);
        data->SetColor(i, ColorRGB(1, 0, 0));
    }
    for (unsigned int i = 0; i < 6; ++i) {
        data->SetIndex(i, indices[i]);
    }
    data->ComputeNormals(true);
    return data;
}

TEST_F(MeshGLTest, BuffersAndArraysGiveTheSamePicture) {
    Mesh fromArrays = MeshBuilder::BuildEllipticCylinder({0, 0, -1}, {1, 1.5F}, {0.5F, 1}, 2);
    Mesh fromBuffers = MeshBuilder::BuildEllipticCylinder({0, 0, -1}, {1, 1.5F}, {0.5F, 1}, 2);
    EXPECT_TRUE(fromBuffers.GetData().Update(STORAGE_VBO));
    EXPECT_FALSE(fromBuffers.GetData().Update(static_cast<STORAGE>(1)));
    const Picture expected = DrawInMode(fromArrays, MeshAttribute::RENDER_SURFACE);
    EXPECT_GT(expected.Count([](const Pixel& p) { return p != BLACK; }), 1000);
    EXPECT_EQ(DrawInMode(fromBuffers, MeshAttribute::RENDER_SURFACE).pixels, expected.pixels);

    // A mesh that is drawn from arrays after one that is drawn from buffers, and the other way round.
    FrameFixture f(100, 100);
    f.frame.Add(fromBuffers);
    f.frame.Add(fromArrays)->GetAttribute().SetGlobalTranslation({0.3F, 0, 1});
    const Picture mixed = f.Draw();
    FrameFixture g(100, 100);
    g.frame.Add(fromArrays);
    g.frame.Add(fromBuffers)->GetAttribute().SetGlobalTranslation({0.3F, 0, 1});
    EXPECT_EQ(mixed.pixels, g.Draw().pixels);
}

TEST_F(MeshGLTest, UpdateRefreshesBuffersInPlace) {
    Mesh mesh = MakeRectangle(-2, -2, 0, 2, 0, {1, 0, 0});
    mesh.GetData().Update(STORAGE_VBO);
    mesh.GetData().Move({2, 0, 0});
    const Picture before = DrawInMode(mesh, MeshAttribute::RENDER_SURFACE);
    EXPECT_EQ(before.At(75, 50), HasBuffers() ? BLACK : RED) << "the card has the old places";
    EXPECT_TRUE(mesh.GetData().UpdateVertexArray(STORAGE_VBO));
    EXPECT_EQ(DrawInMode(mesh, MeshAttribute::RENDER_SURFACE).At(75, 50), RED);
}

TEST_F(MeshGLTest, CopiesOfIndexedMeshesAreDrawnWhole) {
    MeshData* const data = MakeIndexedSquare();
    data->Update(STORAGE_VBO);
    Mesh source(*data);
    // The copy's index buffer holds one index a vertex, less than it needs.
    auto* const copy = new MeshData(*data);
    Mesh copied(*copy);
    const Picture expected = DrawInMode(source, MeshAttribute::RENDER_SURFACE);
    EXPECT_NEAR(expected.Count([](const Pixel& p) { return p != BLACK; }), 2500, 50);
    EXPECT_EQ(DrawInMode(copied, MeshAttribute::RENDER_SURFACE).pixels, expected.pixels);
    EXPECT_EQ(DrawInMode(source, MeshAttribute::RENDER_SURFACE).pixels, expected.pixels) << "still drawable";
    EXPECT_TRUE(copy->Update(STORAGE_VBO));
    EXPECT_EQ(DrawInMode(copied, MeshAttribute::RENDER_SURFACE).pixels, expected.pixels);

    // A copy of the copy, and one assigned over a mesh that had buffers of its own.
    auto* const assigned = new MeshData(3, GL_LINES);
    assigned->CreateVertexArray(nullptr);
    assigned->Update(STORAGE_VBO);
    *assigned = *copy;
    EXPECT_EQ(assigned->GetMode(), static_cast<unsigned int>(GL_TRIANGLES));
    EXPECT_EQ(DrawInMode(Mesh(*assigned), MeshAttribute::RENDER_SURFACE).pixels, expected.pixels);
}

TEST_F(MeshGLTest, ColoursOfOneMeshDoNotReachTheNext) {
    FrameFixture f(100, 100);
    MeshData* const colored = MakeIndexedSquare();
    f.frame.Add(Mesh(*colored));
    Mesh plain = MeshBuilder::BuildBox({-2, -2, -1}, {-1.2F, 2, 0});
    plain.GetAttribute().SetColor(ColorRGBA(0, 1, 0));
    plain.GetAttribute().SetSpecularity(0);
    f.frame.Add(plain);
    const Picture picture = f.Draw();
    EXPECT_EQ(picture.At(50, 50).g, picture.At(50, 50).b) << "red, lit";
    EXPECT_GT(picture.At(50, 50).r, 200);
    EXPECT_TRUE(Near(picture.At(10, 50), {0, 214, 0}, 2)) << "ambient 0.04 and diffuse 0.8 of green";
}

TEST_F(MeshGLTest, TranslucentMeshesShowWhatIsBehind) {
    FrameFixture f(20, 20);
    f.frame.SetBackgroundColor(ColorRGBA(0, 0, 1));
    f.frame.Add(MakeRectangle(-2, -2, 2, 2, 0, {1, 0, 0, 0.5F}));
    EXPECT_TRUE(Near(f.Draw().At(10, 10), {128, 0, 128}, 1));
}

TEST_F(MeshGLTest, OutlinesAndPoints) {
    const Mesh square = MakeRectangle(-1, -1, 1, 1, 0, {1, 0, 0});
    const auto isRed = [](const Pixel& p) { return p == RED; };

    const Picture lines = DrawInMode(square, MeshAttribute::RENDER_WIREFRAME);
    EXPECT_EQ(lines.At(40, 30), BLACK) << "inside a triangle";
    // Four sides and a diagonal of 50 pixels each.
    EXPECT_NEAR(lines.Count(isRed), 250, 12);

    const Picture points = DrawInMode(square, MeshAttribute::RENDER_POINTS);
    EXPECT_NEAR(points.Count(isRed), 4, 2);
    Mesh large = square;
    large.GetAttribute().SetLineWidth(5.0F);
    EXPECT_NEAR(DrawInMode(large, MeshAttribute::RENDER_POINTS).Count(isRed), 4 * 25, 40);
    EXPECT_NEAR(DrawInMode(large, MeshAttribute::RENDER_WIREFRAME).Count(isRed), 5 * 250, 150);

    EXPECT_EQ(DrawInMode(square, static_cast<MeshAttribute::RenderMode>(6)).Count(BLACK), 100 * 100);
}

TEST_F(MeshGLTest, HiddenLinesAndOutlinedSurfaces) {
    FrameFixture f(100, 100);
    Mesh front = MakeRectangle(-1, -1, 1, 1, 1, {1, 0, 0});
    front.GetAttribute().SetRenderMode(MeshAttribute::RENDER_HIDDEN_LINE);
    Mesh back = MakeRectangle(-0.5F, -1.5F, 0.5F, 1.5F, -1, {0, 1, 0});
    back.GetAttribute().SetRenderMode(MeshAttribute::RENDER_HIDDEN_LINE);
    f.frame.Add(front);
    f.frame.Add(back);
    const Picture hidden = f.Draw();
    int seenBehind = 0;
    for (int y = 26; y < 74; ++y) {
        for (int x = 26; x < 74; ++x) {
            seenBehind += hidden.At(x, y) == GREEN ? 1 : 0;
        }
    }
    EXPECT_EQ(seenBehind, 0) << "the front surface hides the lines behind it";
    EXPECT_GT(hidden.Count(GREEN), 20) << "which stand out above and below";
    EXPECT_EQ(hidden.At(40, 30), BLACK) << "but is not painted itself";

    // Lines on a lit surface are three quarters as bright.
    Mesh box = MeshBuilder::BuildBox({-1, -1, -1}, {1, 1, 1});
    box.GetAttribute().SetSpecularity(0);
    const Picture outlined = DrawInMode(box, MeshAttribute::RENDER_SURFACE_WIREFRAME);
    EXPECT_TRUE(Near(outlined.At(40, 30), {214, 214, 214}, 2));
    const auto isLine = [](const Pixel& p) { return Near(p, {163, 163, 163}, 2); };
    EXPECT_NEAR(outlined.Count(isLine), 49, 4) << "the diagonal of the front; its edges belong to the dark sides too";
    float diffuse[4];
    glGetLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
    EXPECT_FLOAT_EQ(diffuse[0], 0.75F);
    EXPECT_TRUE(Near(DrawInMode(box, MeshAttribute::RENDER_SURFACE).At(40, 30), {214, 214, 214}, 2))
        << "the next pass has its own light";
}

TEST_F(MeshGLTest, XRayAddsDepthsAlongTheLineOfSight) {
    if (!Has(CAPABILITY_SHADER)) {
        EXPECT_EQ(DrawInMode(MakeRectangle(-1, -1, 1, 1, 0, {1, 0, 0}), MeshAttribute::RENDER_XRAY).At(50, 50), RED)
            << "drawn as a surface";
        return;
    }
    // Front faces at eye depths 1 and 2 add a quarter of each; faces seen from behind would take away, which eight bits
    // a channel cannot hold.
    FrameFixture f(100, 100);
    f.view.SetProjectionOrthogonalRH(-2, 2, -2, 2, 0.5, 9);
    Mesh nearer = MakeRectangle(-1, -1, 1, 1, 4, {1, 0, 0});
    nearer.GetAttribute().SetRenderMode(MeshAttribute::RENDER_XRAY);
    Mesh farther = MakeRectangle(-1, -1, 1, 0, 3, {0, 1, 0});
    farther.GetAttribute().SetRenderMode(MeshAttribute::RENDER_XRAY);
    f.frame.Add(nearer);
    f.frame.Add(farther);
    f.frame.Add(MakeRectangle(1.2F, -1, 2, 1, 0, {0, 0, 1}));
    const Picture picture = f.Draw();
    EXPECT_TRUE(Near(picture.At(50, 30), {64, 64, 64}, 1)) << "one surface";
    EXPECT_TRUE(Near(picture.At(50, 70), {191, 191, 191}, 2)) << "two";
    EXPECT_EQ(picture.At(90, 50), BLUE) << "the next mesh is drawn as ever";
    EXPECT_NE(MeshRenderer::s_XRayShader, 0U);
    MeshRenderer::Release();
    EXPECT_EQ(MeshRenderer::s_XRayShader, 0U);
    EXPECT_EQ(f.Draw().pixels, picture.pixels) << "built again";
}

TEST_F(MeshGLTest, BoundingBoxMarksStandClearOfTheObject) {
    FrameFixture f(200, 200);
    Mesh box = MeshBuilder::BuildBox({-1, -1, -1}, {1, 1, 1});
    box.GetAttribute().ShowBoundingBox();
    box.GetAttribute().SetBoundingBoxColor(ColorRGBA(0, 1, 0));
    f.frame.Add(box);
    // Enlarged by 2 % of 2: marks at 1.04 are 52 pixels from the centre, a quarter of 104 pixels long.
    const Picture picture = f.Draw();
    int row = 0;
    while (row < 100 && picture.At(60, row) != GREEN) {
        ++row;
    }
    EXPECT_NEAR(row, 48, 1);
    EXPECT_EQ(picture.At(100, row), BLACK) << "the middle of an edge is left open";
    EXPECT_NEAR(picture.Count(GREEN), 8 * 26, 20);
}

TEST_F(MeshGLTest, IncompleteMeshesDrawNothing) {
    FrameFixture f(20, 20);
    f.frame.Add(Mesh());
    f.frame.Add(Mesh(*new MeshData(5, GL_TRIANGLES)));
    f.frame.Add(Mesh(*new MeshData(5, 300, GL_TRIANGLES)));
    auto* const withoutIndices = new MeshData(4, 6, GL_TRIANGLES);
    withoutIndices->CreateVertexArray(nullptr);
    f.frame.Add(Mesh(*withoutIndices));
    EXPECT_EQ(f.Draw().Count(BLACK), 400);
}

} // namespace
} // namespace KOVA::Quorvex::test
