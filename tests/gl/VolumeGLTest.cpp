// Drawn volumes: against a plain renderer, against formulas, and in their place in frame and scheduler.

#include <algorithm>
#include <cmath>
#include <functional>

#include <gmock/gmock.h>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Messages.h>

#include "GlTest.h"
#include "PlainSlices.h"

namespace KOVA::Quorvex::test {
namespace {

using testing::ElementsAre;

using VoxelAt = std::function<int(int x, int y, int z)>;

// With bricks where volumes can be drawn.
Volume MakeVolume(int x, int y, int z, const VoxelAt& at) {
    auto* const data =
        new VolumeData(static_cast<std::size_t>(x), static_cast<std::size_t>(y), static_cast<std::size_t>(z));
    for (int i = 0; i < x * y * z; ++i) {
        data->getDataPtr()[i] = static_cast<unsigned char>(at(i % x, i / x % y, i / x / y));
    }
    if (Library::CheckQXExtension(CAPABILITY_VOLUME)) {
        data->Update(STORAGE_VBO);
    }
    Volume volume(*data);
    volume.GetAttribute().SetRenderMode(VolumeAttribute::Unshaded);
    return volume;
}

void SetTable(VolumeAttribute& attribute, const std::function<ColorRGBA(float grey)>& at) {
    for (unsigned int i = 0; i < VolumeAttribute::transferEntries; ++i) {
        attribute.SetTransferFunction(i, at(static_cast<float>(i) / 255.0F));
    }
}

class VolumeGLTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        if (!Has(CAPABILITY_VOLUME)) {
            GTEST_SKIP() << "this driver cannot draw volumes";
        }
    }
};

TEST_F(GlTest, VolumesNeedShadersAndDoNoHarmWithoutThem) {
    EXPECT_EQ(Has(CAPABILITY_VOLUME), Has(CAPABILITY_SHADER));
    EXPECT_EQ(VolumeRenderer::m_bInit, Has(CAPABILITY_VOLUME));
    EXPECT_STREQ(Library::GetGLExtensionString(CAPABILITY_VOLUME), VolumeRenderer::GetGLExtensionString());
    FrameFixture f(32, 32);
    f.frame.Add(MakeVolume(8, 8, 8, [](int, int, int) { return 255; }));
    const Picture picture = f.Draw();
    EXPECT_EQ(picture.At(16, 16) == BLACK, !Has(CAPABILITY_VOLUME));
    EXPECT_EQ(picture.At(1, 1), BLACK);
    VolumeRenderer::CleanUp();
}

// Everything that is skipped, sorted or batched, against one slice after the other.
TEST_F(VolumeGLTest, AsThePlainRendererDraws) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    // Waves in a block with empty space around it, so that bricks of all kinds are there.
    Volume volume = MakeVolume(70, 52, 40, [](int x, int y, int z) {
        const bool inside = x < 45 && y > 8 && z > 3;
        return inside ? static_cast<int>(128 + 90 * std::sin(x * 0.31) * std::cos(y * 0.23 + z * 0.17))
                      : (x * 7 + y * 3) % 20;
    });
    VolumeAttribute& attribute = volume.GetAttribute();
    for (unsigned int i = 0; i < 256; ++i) { // with a gap in the middle
        const float grey = static_cast<float>(i) / 255.0F;
        const bool shown = (i > 70 && i < 110) || i > 190;
        attribute.SetTransferFunction(i,
                                      {grey, 1 - grey, 0.3F + 0.5F * grey, shown ? 0.04F + 0.4F * grey * grey : 0.0F});
        for (unsigned int k = 0; k < 6; ++k) {
            attribute.SetUserSliceTransferFunction(k, i,
                                                   {1 - grey, grey, static_cast<float>(k) / 6, i > 60 ? 0.7F : 0});
        }
    }
    int largest = 0;
    int differing = 0;
    int lit = 0;
    for (int variant = 0; variant < 32; ++variant) {
        const auto mode = static_cast<VolumeAttribute::RenderMode>(variant % 4);
        const bool leftHand = (variant & 4) != 0;
        const bool perspective = (variant & 8) != 0;
        const bool cut = (variant & 16) != 0; // with clip planes and user slices
        SCOPED_TRACE("variant " + std::to_string(variant));
        FrameFixture f(160, 120);
        f.frame.SetLight({0.2F, 0.3F, leftHand ? -1.0F : 1.0F});
        if (perspective) {
            f.view.SetProjectionPerspective(0.8F, 0.1F, 9, leftHand);
        } else {
            f.view.SetProjectionOrthogonal(-1.2, 1.2, -1.2, 1.2, 0.1, 9, leftHand);
        }
        f.view.SetModelviewViewer({1.3F, 0.9F, leftHand ? -1.5F : 1.5F}, {0.1F, 0, 0}, {0, 1, 0});
        attribute.SetRenderMode(mode);
        attribute.SetUserClipPlane(1, cut ? Vector4d(-0.8, 0.1, 0.4, 0.2) : Vector4d(0, 0, 0, 0));
        attribute.SetUserClipPlane(4, cut ? Vector4d(0, -1, 0, 0.45) : Vector4d(0, 0, 0, 0));
        attribute.SetUserSlice(0, cut ? Vector4d(0.3, 0.1, 1, 0.02) : Vector4d(0, 0, 0, 0));
        attribute.SetUserSlice(5, cut ? Vector4d(1, 0.2, 0, -0.3) : Vector4d(0, 0, 0, 0));
        f.frame.Add(volume);
        std::vector<unsigned char> pixels;
        ASSERT_TRUE(f.frame.RenderToPixels(pixels, 160, 120));
        const Vector3f light = f.frame.GetLightTransformed();
        const auto expected = DrawPlainSlices(volume.GetData(), attribute, f.view, light, 160, 120);
        ASSERT_EQ(pixels.size(), expected.size());
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            differing += std::abs(pixels[i] - expected[i]) > 1 ? 1 : 0;
            largest = std::max(largest, std::abs(pixels[i] - expected[i]));
            lit += expected[i] > 20 ? 1 : 0;
        }
    }
    // Two in the one or other pixel of the millions: triangles of another fan are filtered a little differently.
    EXPECT_LE(largest, 2) << "8-bit steps";
    EXPECT_LE(differing, 5);
    EXPECT_GT(lit, 32 * 160 * 120 / 4) << "there was something to compare";
}

// Voxel columns that do not change along z, seen along z: the largest intensity is the interpolated column, looked up
// in the table as a texture of 256 texels. No seam shows where bricks meet.
TEST_F(VolumeGLTest, MaximumIntensityIsTheFormula) {
    const auto column = [](int x, int y) { return (x * 37 + y * 101 + x * y) % 200 + 40; };
    const auto slab = [](int x, int y) { return (x * 11 + y * 59) % 256; };
    Volume volume =
        MakeVolume(64, 64, 64, [&](int x, int y, int z) { return z >= 20 && z < 30 ? slab(x, y) : column(x, y); });
    volume.GetAttribute().SetRenderMode(VolumeAttribute::MaximumIntensity);
    SetTable(volume.GetAttribute(), [](float grey) { return ColorRGBA(grey, grey, grey, 1); });
    FrameFixture f(256, 256); // a voxel is two pixels wide, their centres a quarter beside the voxel's
    f.frame.Add(volume);
    const Picture picture = f.Draw();
    int largest = 0;
    for (int py = 70; py < 186; ++py) {
        for (int px = 70; px < 186; ++px) {
            const double x = (px + 0.5 - 64) / 2 - 0.5;
            const double y = (256 - (py + 0.5) - 64) / 2 - 0.5;
            const int x0 = static_cast<int>(x);
            const int y0 = static_cast<int>(y);
            const auto interpolate = [&](const auto& at) {
                return (at(x0, y0) * (x0 + 1 - x) + at(x0 + 1, y0) * (x - x0)) * (y0 + 1 - y) +
                       (at(x0, y0 + 1) * (x0 + 1 - x) + at(x0 + 1, y0 + 1) * (x - x0)) * (y - y0);
            };
            const double intensity = std::max(interpolate(column), interpolate(slab));
            const double expected = std::clamp(intensity * 256 / 255 - 0.5, 0.0, 255.0);
            largest = std::max(largest, static_cast<int>(std::lround(std::abs(picture.At(px, py).g - expected))));
        }
    }
    EXPECT_LE(largest, 2) << "8-bit steps";
}

// Opacity is per voxel size, however many slices are drawn: after a way of n voxel sizes 0.98^n is let through.
TEST_F(VolumeGLTest, OpacityDoesNotDependOnTheNumberOfSlices) {
    Volume volume = MakeVolume(34, 34, 20, [](int, int, int) { return 128; });
    SetTable(volume.GetAttribute(), [](float) { return ColorRGBA(1, 1, 1, 0.02F); });
    const double expected = 255 * (1 - std::pow(0.98, 2 * 20));
    FrameFixture f(64, 64);
    Volume* const shown = f.frame.Add(volume);
    f.frame.SetFastPassSampleDivisor(2.0F);
    const double rounding = Has(CAPABILITY_FRAME_BUFFER) ? 0 : 40; // of 8-bit windows, slice by slice
    for (const float factor : {1.0F, 2.0F, 4.0F}) {
        shown->GetAttribute().SetSampleFactor(factor);
        EXPECT_NEAR(f.Draw().At(32, 32).r, expected, 4 + rounding) << factor;
        EXPECT_NEAR(f.Draw(false).At(32, 32).r, expected, 6 + rounding) << "fast pass at " << factor;
    }
    for (const float nonsense : {0.0F, -1.0F, std::nanf(""), 1e-30F}) {
        shown->GetAttribute().SetSampleFactor(nonsense);
        f.Draw();
    }
}

TEST_F(VolumeGLTest, NearPartsHideFarOnesAndFacesTowardsTheViewerAreLit) {
    // Red below the middle of z, blue above it, cut open on both sides: on the way to the air outside every intensity
    // comes through all that are below.
    Volume halves = MakeVolume(66, 66, 66, [](int, int, int z) { return z < 33 ? 100 : 200; });
    SetTable(halves.GetAttribute(), [](float grey) {
        return ColorRGBA(grey < 0.5F ? 1.0F : 0, 0, grey < 0.5F ? 0 : 1.0F, grey < 0.2F ? 0 : 1.0F);
    });
    halves.GetAttribute().SetUserClipPlane(0, Vector4d(0, 0, 1, 0.9));
    halves.GetAttribute().SetUserClipPlane(1, Vector4d(0, 0, -1, 0.9));
    Volume ball = MakeVolume(66, 66, 66, [](int x, int y, int z) {
        const double r = std::sqrt((x - 32.5) * (x - 32.5) + (y - 32.5) * (y - 32.5) + (z - 32.5) * (z - 32.5));
        return static_cast<int>(std::clamp(255 - 12 * (r - 20), 0.0, 255.0));
    });
    SetTable(ball.GetAttribute(), [](float grey) { return ColorRGBA(0.7F, 0.7F, 0.7F, grey < 0.5F ? 0.0F : 1.0F); });
    ball.GetAttribute().SetRenderMode(VolumeAttribute::Shaded);
    for (int variant = 0; variant < 8; ++variant) {
        SCOPED_TRACE("variant " + std::to_string(variant));
        const bool leftHand = (variant & 1) != 0;
        const bool perspective = (variant & 2) != 0;
        const float side = (variant & 4) != 0 ? 1.0F : -1.0F; // of z, from which one looks
        FrameFixture f(64, 64);
        f.frame.SetLight({0, 0, leftHand ? -1.0F : 1.0F});
        if (perspective) {
            f.view.SetProjectionPerspective(0.8F, 0.1F, 9, leftHand);
        } else {
            f.view.SetProjectionOrthogonal(-1.5, 1.5, -1.5, 1.5, 0.1, 9, leftHand);
        }
        f.view.SetModelviewViewer({0.9F, 0.7F, 3 * side}, {0, 0, 0}, {0, 1, 0});
        Volume* const shown = f.frame.Add(halves);
        EXPECT_TRUE(Near(f.Draw().At(30, 32), side > 0 ? BLUE : RED, 6));
        f.frame.Remove(*shown);
        f.frame.Add(ball);
        const Picture lit = f.Draw();
        EXPECT_GT(lit.At(32, 32).g, 160);
        const int rim = lit.At(32, perspective ? 53 : 50).g;
        EXPECT_LT(rim, 160);
        EXPECT_GT(rim, 40);
        EXPECT_EQ(lit.At(2, 2), BLACK);
    }
}

TEST_F(VolumeGLTest, MeshesAndVolumesHideEachOther) {
    Volume volume = MakeVolume(10, 10, 10, [](int, int, int) { return 200; });
    SetTable(volume.GetAttribute(), [](float grey) { return ColorRGBA(0, 0, 1, grey > 0.3F ? 1.0F : 0); });
    FrameFixture f(64, 64);
    f.frame.Add(volume);
    f.frame.Add(MakeRectangle(-2, 0, 2, 2, 2, {1, 0, 0}));
    f.frame.Add(MakeRectangle(-2, -2, 2, 0, -2, {0, 1, 0}));
    const Picture picture = f.Draw();
    EXPECT_EQ(picture.At(32, 20), RED) << "in front";
    EXPECT_TRUE(Near(picture.At(32, 40), BLUE, 2)) << "behind";
    EXPECT_EQ(picture.At(32, 60), GREEN) << "beside";
}

TEST_F(VolumeGLTest, WhatIsTransparentOrUnknownIsOnlyItsBox) {
    Volume volume = MakeVolume(40, 40, 40, [](int x, int, int) { return x < 10 ? 50 : 10; });
    SetTable(volume.GetAttribute(), [](float) { return ColorRGBA(1, 1, 1, 0); });
    FrameFixture f(128, 128);
    Volume* const shown = f.frame.Add(volume);
    VolumeAttribute& attribute = shown->GetAttribute();
    EXPECT_EQ(f.Draw().Count(BLACK), 128 * 128);
    attribute.ShowBoundingBox();
    attribute.SetColor({0, 1, 0});
    const int box = f.Draw().Count(GREEN);
    EXPECT_GT(box, 100);

    // Only bricks in the window have outlines; a mode that does not exist draws nothing more, and harms no later one.
    SetTable(attribute, [](float grey) { return ColorRGBA(0, 0, 1, grey > 0.15F && grey < 0.8F ? 1.0F : 0); });
    attribute.SetRenderMode(static_cast<VolumeAttribute::RenderMode>(7));
    attribute.ShowBrickBoxes(true);
    const Picture outlines = f.Draw();
    EXPECT_GT(outlines.Count(RED), 50);
    EXPECT_EQ(outlines.Count([](const Pixel& p) { return p.r > 0 || p.b > 0; }), outlines.Count(RED));
    EXPECT_TRUE(std::all_of(outlines.pixels.begin(), outlines.pixels.end(), [&outlines](const Pixel& pixel) {
        return pixel != RED || (&pixel - outlines.pixels.data()) % 128 < 82;
    }));
    attribute.ShowBrickBoxes(false);
    attribute.SetRenderMode(VolumeAttribute::Shaded);
    EXPECT_GT(f.Draw().Count([](const Pixel& p) { return p.b > 0; }), 500);
}

TEST_F(VolumeGLTest, ARequestStopsTheQualityPassAndLeavesNothingBehind) {
    Volume volume = MakeVolume(100, 100, 100, [](int x, int y, int z) { return (x ^ y ^ z) * 2; });
    FrameFixture f(64, 64);
    f.frame.Add(volume);
    f.frame.Add(volume);
    f.frame.Render();
    Library::TimerProc(nullptr, 0, 0, 0); // the fast pass
    const Picture fast = f.Shown();
    {
        const DuringPass request([&f] { f.frame.Render(); });
        Library::TimerProc(nullptr, 0, 0, 0);
        EXPECT_GT(request.looks, 0);
    }
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&f.frame)) << "to be tried again";
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&f.frame));
    if (Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_EQ(f.Shown().pixels, fast.pixels);
    }
    for (const GLenum state : {GLenum{GL_ALPHA_TEST}, GLenum{GL_BLEND}, GLenum{GL_TEXTURE_3D}, GLenum{GL_CLIP_PLANE0},
                               GLenum{GL_VERTEX_ARRAY}}) {
        EXPECT_FALSE(glIsEnabled(state)) << state;
    }
    GLint value = 0;
    glGetIntegerv(GL_DEPTH_WRITEMASK, &value);
    EXPECT_EQ(value, GL_TRUE);
    glGetIntegerv(GL_CURRENT_PROGRAM, &value);
    EXPECT_EQ(value, 0);
    glGetIntegerv(GL_BLEND_EQUATION, &value);
    EXPECT_EQ(value, GL_FUNC_ADD);
    while (!Library::s_jobFast.empty() || !Library::s_jobQuality.empty()) {
        Library::TimerProc(nullptr, 0, 0, 0);
    }
    EXPECT_NE(f.Shown().pixels, fast.pixels) << "and comes to its end";
}

TEST_F(VolumeGLTest, TheHostMayChangeTheVolumeWhileItIsDrawn) {
    Volume volume = MakeVolume(64, 64, 64, [](int, int, int) { return 200; });
    SetTable(volume.GetAttribute(), [](float grey) { return ColorRGBA(0, 1, 0, grey > 0.3F ? 1.0F : 0); });
    for (int change = 0; change < 3; ++change) {
        FrameFixture f(64, 64);
        Volume* const shown = f.frame.Add(volume);
        const DuringPass pass([&, change] {
            if (change == 0) {
                shown->GetData().Update(STORAGE_VBO);
            } else if (change == 1) {
                shown->GetData().destroyBricks();
            } else {
                f.frame.Clear();
            }
        });
        f.Draw();
        EXPECT_GT(pass.looks, 0);
        volume.GetData().Update(STORAGE_VBO);
    }
    FrameFixture f(64, 64);
    f.frame.Add(volume);
    EXPECT_TRUE(Near(f.Draw().At(32, 32), GREEN, 1));
}

TEST_F(VolumeGLTest, ProgressLooksForInputWhenItIsDueAndSeesAStopAtOnce) {
    FrameFixture f(64, 64);
    f.frame.Add(MakeVolume(4, 4, 4, [](int, int, int) { return 1; }));
    {
        const DuringPass pass([] {});
        int calls = 0;
        const auto start = static_cast<double>(platform::CounterNow());
        double elapsed = 0.0;
        while (elapsed < 0.02) {
            EXPECT_FALSE(f.frame.Progress(0.5F));
            elapsed = (static_cast<double>(platform::CounterNow()) - start) / platform::CounterFrequency();
            ++calls;
        }
        EXPECT_GE(pass.looks, 2);
        EXPECT_LE(pass.looks, 25);
        EXPECT_GT(calls, 2000);
    }
    f.frame.Render();
    EXPECT_TRUE(f.frame.Progress(0.5F));
    EXPECT_TRUE(f.frame.Progress(0.5F));
    Library::s_jobFast.clear();
    EXPECT_FALSE(f.frame.Progress(0.5F));
    f.frame.AbortRendering();
    EXPECT_TRUE(f.frame.ProgressObject());
}

TEST_F(VolumeGLTest, CapturesWhileARedrawWaits) {
    FrameFixture f(64, 64);
    f.frame.Add(MakeVolume(40, 40, 40, [](int, int, int) { return 200; }));
    f.frame.Render();
    std::vector<unsigned char> pixels;
    ASSERT_EQ(f.frame.RenderToPixels(pixels, 64, 64), Has(CAPABILITY_FRAME_BUFFER));
    EXPECT_THAT(Library::s_jobFast, testing::ElementsAre(&f.frame)) << "it goes on waiting";

    FrameFixture other(16, 16);
    const DuringPass pass([&other] { other.frame.Render(); });
    EXPECT_FALSE(f.frame.RenderToPixels(pixels, 64, 64)) << "a new request stops it";
    Library::s_jobFast.clear();
}

TEST_F(VolumeGLTest, VolumesOfGroupsAreDrawnAndStopThePass) {
    ObjectTypes group;
    Volume* const inner = group.Add(MakeVolume(64, 64, 64, [](int, int, int) { return 200; }));
    SetTable(inner->GetAttribute(), [](float grey) { return ColorRGBA(1, 0, 0, grey > 0.3F ? 1.0F : 0); });
    FrameFixture f(64, 64);
    ObjectTypes* const stored = f.frame.Add(group);
    EXPECT_TRUE(Near(f.Draw().At(32, 32), RED, 1));
    {
        const DuringPass request([&f] { f.frame.Render(); });
        EXPECT_FALSE(f.frame.Render(true, 64, 64));
    }
    Library::s_jobFast.clear();
    stored->Clear(ObjectTypes::VOLUME);
    EXPECT_EQ(f.Draw().Count(BLACK), 64 * 64);
}

} // namespace
} // namespace KOVA::Quorvex::test
