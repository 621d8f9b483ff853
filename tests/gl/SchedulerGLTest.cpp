// The scheduler on real frames: who is drawn when, what interrupts, and what happens inside a pass.

#include <functional>

#include <gmock/gmock.h>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/WindowSystem.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SchedulerGLTest : public GlTest {
protected:
    static void Tick() { Library::TimerProc(nullptr, 0, 0, 0); }

    // Something heavy enough for input to be let through while it is drawn.
    static void AddHeavyScene(RenderFrame& frame) {
        Mesh sphere = MeshBuilder::BuildSphere({0, 0, 0}, 1.0F);
        for (int i = 0; i < 300; ++i) {
            frame.Add(sphere);
        }
    }
};

TEST_F(SchedulerGLTest, TwoRequestsMakeOneFastPassAndOneQualityPass) {
    FrameFixture f(16, 16);
    f.frame.Render();
    f.frame.Render();
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&f.frame));
    EXPECT_TRUE(Library::BreakRendering());

    f.frame.SetBackgroundColor(ColorRGBA(1, 0, 0));
    Tick();
    EXPECT_EQ(f.Shown().At(8, 8), RED);
    EXPECT_THAT(Library::s_jobFast, IsEmpty());
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&f.frame));

    f.frame.SetBackgroundColor(ColorRGBA(0, 1, 0));
    Tick();
    EXPECT_EQ(f.Shown().At(8, 8), GREEN);
    EXPECT_THAT(Library::s_jobQuality, IsEmpty());

    f.frame.SetBackgroundColor(ColorRGBA(0, 0, 1));
    Tick();
    EXPECT_EQ(f.Shown().At(8, 8), GREEN) << "nothing was asked for";
}

TEST_F(SchedulerGLTest, FramesTakeTurnsFastPassesFirst) {
    FrameFixture a(16, 16);
    FrameFixture b(16, 16);
    a.frame.Render();
    b.frame.Render();
    Tick();
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&b.frame));
    Tick();
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&a.frame, &b.frame));
    a.frame.Render(); // its pending quality pass goes back to the end
    Tick();
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&b.frame, &a.frame));
    Tick();
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&a.frame));
    Tick();
    EXPECT_THAT(Library::s_jobQuality, IsEmpty());
}

TEST_F(SchedulerGLTest, QualityPassOnlyAboveItsThreshold) {
    FrameFixture f(16, 16);
    EXPECT_EQ(f.frame.GetQualityThreshold(), 100.0F);
    f.frame.SetQualityThreshold(1.0F);
    f.frame.Render();
    Tick();
    EXPECT_THAT(Library::s_jobQuality, IsEmpty());
}

TEST_F(SchedulerGLTest, NewRequestStopsAQualityPassWhichIsNotShownAndTriedAgain) {
    FrameFixture f(32, 32);
    AddHeavyScene(f.frame);
    f.frame.Render();
    Tick();
    ASSERT_EQ(f.Shown().At(0, 0), BLACK);

    f.frame.SetBackgroundColor(ColorRGBA(1, 0, 0));
    {
        DuringPass request([&f] { f.frame.Render(); });
        Tick();
        ASSERT_GT(request.looks, 0) << "the pass let no input through";
    }
    if (Has(CAPABILITY_FRAME_BUFFER)) { // an off-screen window has one buffer: what is drawn straight to it is there
        EXPECT_EQ(f.Shown().At(0, 0), BLACK) << "an interrupted pass is not shown";
    }
    EXPECT_FALSE(f.frame.IsBusy());
    EXPECT_EQ(Library::GetBusyFrame(), nullptr);
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&f.frame));
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&f.frame)) << "kept until the next fast pass";

    Tick();
    EXPECT_EQ(f.Shown().At(0, 0), RED) << "the fast pass that was asked for";
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&f.frame));
    Tick();
    EXPECT_THAT(Library::s_jobQuality, IsEmpty());
}

TEST_F(SchedulerGLTest, NothingElseIsDrawnWhileAFrameIsBusy) {
    FrameFixture busy(32, 32);
    FrameFixture other(16, 16);
    AddHeavyScene(busy.frame);
    busy.frame.Render();
    Tick();
    Library::s_jobQuality.push_back(&other.frame); // a job that the tick inside the pass finds

    DuringPass pass([&] {
        EXPECT_TRUE(busy.frame.IsBusy());
        EXPECT_EQ(Library::GetBusyFrame(), &busy.frame);
        Tick();
        EXPECT_THAT(Library::s_jobQuality, ElementsAre(&busy.frame, &other.frame));
        EXPECT_FALSE(other.frame.Render(true, 16, 16)) << "drawing at once from inside a pass";
        EXPECT_FALSE(busy.frame.Render(true, 32, 32));
        EXPECT_FALSE(other.frame.RenderToBitmap("never-written.bmp", 16, 16));
        Library::s_jobFast.clear(); // the capture asked for a redraw
    });
    Tick();
    ASSERT_GT(pass.looks, 0);
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&other.frame));
}

TEST_F(SchedulerGLTest, PaintingAnotherWindowDoesNotDisturbThePass) {
    FrameFixture busy(64, 64);
    FrameFixture other(48, 32);
    AddHeavyScene(busy.frame);
    Mesh last = MakeRectangle(-2, -2, 0, 2, 2.0F, {0, 0, 1});
    busy.frame.Add(last);
    other.frame.SetBackgroundColor(ColorRGBA(0, 1, 0));
    other.Draw();
    const Picture expected = busy.Draw();

    busy.frame.Render();
    Tick();
    DuringPass pass([&] {
        platform::CallWindowProcedure(platform::GetWindowProcedure(other.window), other.window, WM_SIZE, SIZE_RESTORED,
                                      (32 << 16) | 48);
        platform::CallWindowProcedure(platform::GetWindowProcedure(other.window), other.window, WM_PAINT, 0, 0);
        if (!Has(CAPABILITY_FRAME_BUFFER)) {
            EXPECT_THAT(Library::s_jobFast, ElementsAre(&other.frame)) << "painting means drawing: it has to wait";
            Library::s_jobFast.clear();
        }
    });
    Tick();
    ASSERT_GT(pass.looks, 0);
    EXPECT_THAT(Library::s_jobQuality, IsEmpty()) << "the pass went on to its end";
    EXPECT_EQ(busy.Shown().pixels, expected.pixels);
    EXPECT_EQ(other.Shown().At(24, 16), GREEN);
}

TEST_F(SchedulerGLTest, SceneMayChangeWhileItIsDrawn) {
    FrameFixture f(32, 32);
    AddHeavyScene(f.frame);
    f.frame.Render();
    Tick();
    DuringPass pass([&f] {
        f.frame.Clear();
        f.frame.Add(MakeRectangle(-1, -1, 1, 1, 0, {1, 0, 0}));
    });
    Tick();
    ASSERT_GT(pass.looks, 0);
    EXPECT_EQ(f.Draw().At(16, 16), RED);
}

TEST_F(SchedulerGLTest, AbortedFramesAreNotDrawnAnyMore) {
    FrameFixture f(32, 32);
    AddHeavyScene(f.frame);
    f.frame.Render();
    Tick();
    DuringPass pass([&f] { f.frame.AbortRendering(); });
    Tick();
    ASSERT_GT(pass.looks, 0);
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&f.frame)) << "the pass was stopped";
    Tick();
    EXPECT_THAT(Library::s_jobQuality, IsEmpty()) << "and is dropped";
    Library::s_jobFast.push_back(&f.frame);
    f.frame.Render();
    EXPECT_THAT(Library::s_jobFast, IsEmpty()) << "a request takes the frame out";
}

TEST_F(SchedulerGLTest, ReleaseInsideItsOwnPass) {
    FrameFixture f(32, 32);
    AddHeavyScene(f.frame);
    f.frame.Render();
    Tick();
    DuringPass pass([&f] { f.frame.Release(); });
    Tick();
    ASSERT_GT(pass.looks, 0);
    EXPECT_THAT(Library::s_jobQuality, IsEmpty());
    EXPECT_THAT(Library::s_vRenderFrames, IsEmpty());
    EXPECT_FALSE(f.frame.IsBusy());
}

TEST_F(SchedulerGLTest, TimerServesRequestsByItself) {
    FrameFixture f(16, 16);
    f.frame.SetBackgroundColor(ColorRGBA(1, 0, 0));
    f.view.Render();
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&f.frame)) << "a view asks for its frames";
    while (!Library::s_jobFast.empty() || !Library::s_jobQuality.empty()) {
        ProcessEvents();
    }
    EXPECT_EQ(f.Shown().At(8, 8), RED);
}

} // namespace
} // namespace KOVA::Quorvex::test
