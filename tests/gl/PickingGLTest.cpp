// The mesh under a pixel, against where geometry says that it is drawn.

#include <cmath>
#include <random>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class PickingGLTest : public GlTest {};

// What was drawn is the reference: at each pixel the mesh whose colour is seen there. Left out are pixels at an edge,
// next to which another colour is seen.
void ExpectPicksAsDrawn(FrameFixture& f, const std::vector<std::pair<Mesh*, Pixel>>& meshes) {
    const Picture picture = f.Draw();
    int compared = 0;
    for (int y = 1; y + 1 < f.height; y += 3) {
        for (int x = 1; x + 1 < f.width; x += 3) {
            const Pixel color = picture.At(x, y);
            bool inside = true;
            for (int i = 0; i < 9; ++i) {
                inside = inside && picture.At(x - 1 + i % 3, y - 1 + i / 3) == color;
            }
            if (!inside) {
                continue;
            }
            const Mesh* expected = nullptr;
            for (const auto& [mesh, itsColor] : meshes) {
                expected = color == itsColor ? mesh : expected;
            }
            ASSERT_EQ(f.frame.HitTest(static_cast<unsigned int>(x), static_cast<unsigned int>(y)), expected)
                << x << ", " << y;
            ++compared;
        }
    }
    EXPECT_GT(compared, f.width * f.height / 18);
}

TEST_F(PickingGLTest, FindsWhatIsDrawnInEveryKindOfView) {
    for (int variant = 0; variant < 24; ++variant) {
        const auto [width, height] = std::array{std::pair(120, 60), std::pair(61, 121), std::pair(90, 90)}.at(
            static_cast<std::size_t>(variant % 3));
        const bool leftHand = variant / 3 % 2 == 1;
        const bool perspective = variant / 6 % 2 == 1;
        const bool antiAliased = variant / 12 == 1;
        SCOPED_TRACE("variant " + std::to_string(variant));
        FrameFixture f(width, height);
        if (antiAliased) {
            f.frame.SetAntiAliasing(1.7F);
        }
        if (perspective) {
            f.view.SetProjectionPerspective(0.9F, 1, 20, leftHand);
        } else {
            f.view.SetProjectionOrthogonal(-1.7, 2.3, -2.1, 1.9, 1, 20, leftHand);
        }
        f.view.SetModelviewViewer({1, 0.5F, leftHand ? -5.0F : 5.0F}, {0.1F, 0.2F, 0}, {0, 1, 0});
        Mesh* const red = f.frame.Add(MakeRectangle(-0.8F, -0.1F, 1.2F, 0.3F, 0.5F, {1, 0, 0}));
        Mesh* const green = f.frame.Add(MakeRectangle(-0.1F, -0.8F, 0.4F, 0.7F, -0.5F, {0, 1, 0}));
        Mesh moved = MakeRectangle(0, 0, 0.4F, 0.3F, 0, {0, 0, 1});
        moved.GetAttribute().SetGlobalTranslation({-0.7F, 0.4F, 0});
        moved.GetAttribute().GetTransformRef().Scale({1, 0.8F, 1});
        Mesh* const blue = f.frame.Add(moved);
        ExpectPicksAsDrawn(f, {{red, RED}, {green, GREEN}, {blue, BLUE}});
    }
}

TEST_F(PickingGLTest, TellsPixelsFromTheirNeighbours) {
    // 25 pixels a unit: a square of two pixels, and the corners of the window.
    FrameFixture f(100, 50);
    Mesh* const mesh = f.frame.Add(MakeRectangle(0.201F, 0.121F, 0.279F, 0.199F, 0, {1, 0, 0}));
    std::vector<std::pair<unsigned int, unsigned int>> found;
    for (unsigned int y = 0; y < 50; ++y) {
        for (unsigned int x = 0; x < 100; ++x) {
            if (f.frame.HitTest(x, y) == mesh) {
                found.emplace_back(x, y);
            }
        }
    }
    // x = 55.025 to 56.975 and y = 25 - 4.975 to 25 - 3.025.
    EXPECT_EQ(found, (std::vector<std::pair<unsigned int, unsigned int>>{{55, 20}, {56, 20}, {55, 21}, {56, 21}}));

    f.frame.Add(MakeRectangle(-9, -9, 9, 9, -1, {0, 1, 0}));
    for (const auto& [x, y, hit] : {std::tuple(0U, 0U, true), std::tuple(99U, 49U, true), std::tuple(100U, 10U, false),
                                    std::tuple(10U, 50U, false), std::tuple(~0U, ~0U, false)}) {
        EXPECT_EQ(f.frame.HitTest(x, y) != nullptr, hit) << x << ", " << y;
    }
}

// Where the picture does not fill the window, because its size is limited, it is found where it is shown.
TEST_F(PickingGLTest, FollowsThePictureInTheWindow) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SUCCEED();
        return;
    }
    FrameFixture f(3000, 10);
    f.frame.SetAntiAliasing(2.0F); // 4096 x 20 pixels: the middle 2048 of the window's columns
    f.frame.Add(MakeRectangle(-2, -1, 2, 1, 0, {1, 0, 0}));
    EXPECT_EQ(f.frame.HitTest(470, 5), nullptr);
    EXPECT_NE(f.frame.HitTest(480, 5), nullptr);
    EXPECT_NE(f.frame.HitTest(2519, 5), nullptr);
    EXPECT_EQ(f.frame.HitTest(2529, 5), nullptr);
}

TEST_F(PickingGLTest, HiddenMeshesGroupsAndTies) {
    FrameFixture f(64, 64);
    ObjectTypes group;
    group.Add(MakeRectangle(-2, -2, 2, 2, 3, {1, 0, 0}));
    f.frame.Add(group);
    EXPECT_EQ(f.frame.HitTest(32, 32), nullptr) << "groups are not asked";
    Mesh* const first = f.frame.Add(MakeRectangle(-2, -2, 2, 2, 0, {1, 0, 0}));
    Mesh* const nearest = f.frame.Add(MakeRectangle(-2, -2, 2, 2, 1, {1, 0, 0}));
    Mesh* const last = f.frame.Add(MakeRectangle(-2, -2, 2, 2, 0, {1, 0, 0}));
    EXPECT_EQ(f.frame.HitTest(32, 32), nearest);
    nearest->GetAttribute().Hide();
    EXPECT_EQ(f.frame.HitTest(32, 32), first) << "the earlier of equals";
    first->GetAttribute().Hide();
    EXPECT_EQ(f.frame.HitTest(32, 32), last) << "names do not shift";
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    EXPECT_EQ(f.frame.HitTest(32, 32), last) << "from behind";
    f.frame.SetView(nullptr);
    EXPECT_EQ(f.frame.HitTest(32, 32), nullptr);
}

TEST_F(PickingGLTest, MoreHitsThanThereIsRoomForAreNone) {
    FrameFixture f(16, 16);
    const Mesh mesh = MakeRectangle(-2, -2, 2, 2, 0, {1, 0, 0});
    for (int i = 0; i < 16384; ++i) { // 4 words each
        f.frame.Add(mesh);
    }
    EXPECT_NE(f.frame.HitTest(8, 8), nullptr);
    f.frame.Add(mesh);
    EXPECT_EQ(f.frame.HitTest(8, 8), nullptr);
}

TEST_F(PickingGLTest, LeavesPictureAndStateAlone) {
    FrameFixture f(40, 30);
    FrameFixture other(20, 20);
    f.frame.Add(MeshBuilder::BuildSphere({0, 0, 0}, 1.0F));
    const Picture before = f.Draw();
    glViewport(1, 2, 3, 4);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glScaled(2, 3, 4);
    glEnable(GL_BLEND);
    glClearColor(0.5F, 0.25F, 0.75F, 1);
    f.frame.HitTest(20, 15);
    other.frame.HitTest(1, 1);
    GLint viewport[4];
    GLdouble matrix[16];
    GLint mode = 0;
    glGetIntegerv(GL_VIEWPORT, viewport);
    glGetDoublev(GL_PROJECTION_MATRIX, matrix);
    glGetIntegerv(GL_RENDER_MODE, &mode);
    EXPECT_EQ(viewport[3], 4);
    EXPECT_EQ(matrix[5], 3);
    EXPECT_EQ(mode, GL_RENDER);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    glDisable(GL_BLEND);
    EXPECT_EQ(f.Shown().pixels, before.pixels);
}

// Its quality passes let input through.
Volume SolidVolume() {
    auto* const data = new VolumeData(64, 64, 64);
    std::fill_n(data->getDataPtr(), 64 * 64 * 64, static_cast<unsigned char>(200));
    data->Update(STORAGE_VBO);
    return Volume(*data);
}

// A click while the good picture of another frame is being drawn.
TEST_F(PickingGLTest, InterruptsAQualityPass) {
    if (!Has(CAPABILITY_VOLUME)) {
        GTEST_SKIP();
    }
    FrameFixture f(64, 64);
    FrameFixture other(32, 20);
    f.frame.Add(SolidVolume());
    Mesh* const mesh = other.frame.Add(MakeRectangle(-1, -1, 1, 1, 0, {1, 0, 0}));
    f.Draw(false);
    Mesh* hit = nullptr;
    const DuringPass click([&] { hit = other.frame.HitTest(16, 10); });
    Library::s_jobQuality.push_back(&f.frame);
    const auto tick = [] { Library::TimerProc(nullptr, 0, 0, 0); };
    tick();
    EXPECT_EQ(hit, mesh);
    EXPECT_EQ(click.looks, 1) << "the pass stopped at once";
    EXPECT_EQ(Library::s_jobFast, std::list<RenderFrame*>{&f.frame});
    EXPECT_EQ(Library::s_jobQuality, std::list<RenderFrame*>{&f.frame});
    tick();
    tick();
    EXPECT_TRUE(Library::s_jobQuality.empty()) << "drawn to its end afterwards";
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
}

// A click while a picture to be kept is drawn: the volume's clip planes do not apply to the scene that is asked, and
// the picture is finished as if nothing had been.
TEST_F(PickingGLTest, LeavesACaptureAlone) {
    if (!Has(CAPABILITY_VOLUME) || !Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    FrameFixture f(64, 64);
    FrameFixture other(32, 20);
    f.frame.Add(SolidVolume())->GetAttribute().SetUserClipPlane(0, Vector4d(1.0, 0.0, 0.0, 0.0));
    Mesh* const mesh = other.frame.Add(MakeRectangle(-1, -1, -0.5F, 1, 0, {1, 0, 0})); // in the half that is cut away
    ASSERT_EQ(other.frame.HitTest(10, 10), mesh);
    std::vector<unsigned char> undisturbed;
    ASSERT_TRUE(f.frame.RenderToPixels(undisturbed, 64, 64));
    std::vector<Mesh*> hits;
    std::vector<unsigned char> pixels;
    {
        const DuringPass clicks([&] { hits.push_back(other.frame.HitTest(10, 10)); });
        ASSERT_TRUE(f.frame.RenderToPixels(pixels, 64, 64));
    }
    ASSERT_FALSE(hits.empty());
    EXPECT_EQ(std::count(hits.begin(), hits.end(), mesh), static_cast<std::ptrdiff_t>(hits.size()));
    EXPECT_EQ(pixels, undisturbed);
}

} // namespace
} // namespace KOVA::Quorvex::test
