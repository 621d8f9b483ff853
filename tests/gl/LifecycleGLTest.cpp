// A frame's life on its window: attaching, messages, release, copies.

#include <utility>

#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/WindowSystem.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class LifecycleGLTest : public GlTest {};

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return platform::CallWindowProcedure(platform::GetWindowProcedure(window), window, message, wParam, lParam);
}

constexpr LPARAM SizeParameter(int width, int height) {
    return (static_cast<LPARAM>(height) << 16) | width;
}

int s_hostCalls = 0;
LRESULT HostProcedure(HWND /*window*/, UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    ++s_hostCalls;
    return static_cast<LRESULT>(message) + 1000;
}

TEST_F(LifecycleGLTest, DefaultsOfANewFrame) {
    const RenderFrame frame;
    EXPECT_EQ(frame.GetScreenWidth(), 10U);
    EXPECT_EQ(frame.GetScreenHeight(), 10U);
    EXPECT_EQ(frame.GetDesiredFPS(), 25.0F);
    EXPECT_EQ(frame.GetAntiAliasing(), 1.0F);
    EXPECT_EQ(frame.GetStereoEffect(), 0.08F);
    EXPECT_EQ(frame.GetLight(), Vector3f(0, 0, -1));
    EXPECT_EQ(frame.GetBackgroundColor(), ColorRGBA(0.425F, 0.425F, 0.65F, 1.0F));
    EXPECT_FALSE(frame.IsBusy());
    EXPECT_TRUE(frame.SupportsStencil()) << "no off-screen buffer yet";
}

TEST_F(LifecycleGLTest, AttachingAndReleasingGiveTheWindowBack) {
    HWND window = CreateOffscreenWindow(40, 30);
    platform::SetWindowProcedure(window, HostProcedure);
    View view;
    RenderFrame frame;
    EXPECT_FALSE(frame.Init(window, nullptr));
    EXPECT_FALSE(frame.Init(static_cast<HWND>(nullptr), &view));
    EXPECT_EQ(platform::GetWindowProcedure(window), HostProcedure) << "nothing changed";

    ASSERT_TRUE(frame.Init(window, &view));
    ASSERT_TRUE(frame.Init(window, &view)) << "attached anew";
    ASSERT_TRUE(frame.Init(frame.GetDeviceContext(), &view));
    EXPECT_EQ(platform::GetWindowProcedure(window), RenderFrame::WndProcRenderFrame);
    EXPECT_EQ(platform::GetWindowUserData(window), &frame);
    EXPECT_EQ(frame.GetScreenWidth(), 40U);
    EXPECT_EQ(frame.GetScreenHeight(), 30U);
    EXPECT_EQ(Library::s_vRenderFrames.size(), 1U);

    frame.Render();
    Library::s_jobQuality.push_back(&frame);
    EXPECT_FALSE(frame.InitFailed());
    EXPECT_EQ(platform::GetWindowProcedure(window), HostProcedure);
    EXPECT_EQ(platform::GetWindowUserData(window), nullptr);
    EXPECT_TRUE(Library::s_jobFast.empty());
    EXPECT_TRUE(Library::s_jobQuality.empty());
    EXPECT_TRUE(Library::s_vRenderFrames.empty());
    frame.Release(); // once is enough
    ReleaseWindow(window);
}

TEST_F(LifecycleGLTest, SizeAndPaintShowTheLastPictureWithoutScheduling) {
    FrameFixture f(40, 40);
    f.frame.SetBackgroundColor(ColorRGBA(1, 0, 0));
    f.Draw();
    f.frame.SetBackgroundColor(ColorRGBA(0, 0, 1)); // would be seen if the scene were drawn anew
    const Pixel expected = Has(CAPABILITY_FRAME_BUFFER) ? RED : BLUE;

    // The last picture keeps its proportions: in a window twice as wide it stands in the middle.
    ASSERT_TRUE(ResizeOffscreenWindow(f.window, 80, 40));
    EXPECT_EQ(f.frame.GetScreenWidth(), 80U);
    EXPECT_TRUE(Library::s_jobFast.empty());
    f.width = 80;
    EXPECT_EQ(Send(f.window, WM_PAINT, 0, 0), 0);
    EXPECT_TRUE(Library::s_jobFast.empty());
    const Picture picture = f.Shown();
    EXPECT_EQ(picture.At(40, 20), expected);
    if (Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_EQ(picture.At(5, 20), BLACK);
        EXPECT_EQ(picture.At(75, 20), BLACK);
    }
}

TEST_F(LifecycleGLTest, MinimisedAndEmptySizesKeepTheLast) {
    FrameFixture f(40, 30);
    using Case = std::tuple<WPARAM, int, int>;
    for (const auto& [wParam, width, height] : {Case(SIZE_MINIMIZED, 0, 0), Case(SIZE_MINIMIZED, 50, 50),
                                                Case(SIZE_RESTORED, 0, 20), Case(SIZE_RESTORED, 20, 0)}) {
        Send(f.window, WM_SIZE, wParam, SizeParameter(width, height));
        EXPECT_EQ(f.frame.GetScreenWidth(), 40U);
        EXPECT_EQ(f.frame.GetScreenHeight(), 30U);
    }
    Send(f.window, WM_SIZE, SIZE_RESTORED, SizeParameter(60, 50));
    EXPECT_EQ(f.frame.GetScreenWidth(), 60U);
    EXPECT_EQ(f.frame.GetScreenHeight(), 50U);
}

TEST_F(LifecycleGLTest, HostProcedureSeesEverythingButPaint) {
    HWND window = CreateOffscreenWindow(16, 16);
    platform::SetWindowProcedure(window, HostProcedure);
    View view;
    view.SetProjectionOrthogonalRH(-1, 1, -1, 1, 1, 9);
    view.SetModelviewViewer({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
    RenderFrame frame;
    ASSERT_TRUE(frame.Init(window, &view));
    s_hostCalls = 0;
    EXPECT_EQ(Send(window, WM_PAINT, 0, 0), 0);
    EXPECT_EQ(s_hostCalls, 0);
    EXPECT_EQ(Send(window, WM_SIZE, SIZE_RESTORED, SizeParameter(20, 20)), 1000 + static_cast<LRESULT>(WM_SIZE));
    EXPECT_EQ(Send(window, 0x0400, 1, 2), 1000 + 0x0400);
    EXPECT_EQ(s_hostCalls, 2);

    // The host's window goes before the frame does.
    EXPECT_EQ(Send(window, WM_DESTROY, 0, 0), 1000 + static_cast<LRESULT>(WM_DESTROY));
    EXPECT_TRUE(Library::s_vRenderFrames.empty());
    EXPECT_TRUE(frame.IsAborted());
    EXPECT_EQ(platform::GetWindowProcedure(window), HostProcedure);
    ReleaseWindow(window);
}

TEST_F(LifecycleGLTest, CopiesHaveTheSceneButNotTheWindow) {
    FrameFixture f(32, 32);
    f.frame.Add(MakeRectangle(-1, -1, 1, 1, 0, {1, 0, 0}));
    f.Draw();
    {
        RenderFrame copy(f.frame);
        EXPECT_EQ(copy, f.frame) << "the same window";
        EXPECT_EQ(copy.GetView(), &f.view);
        EXPECT_EQ(Library::s_vRenderFrames.size(), 1U) << "not scheduled";
        copy.Clear();
    }
    // The copy's end took neither the window nor the off-screen picture away.
    EXPECT_EQ(platform::GetWindowUserData(f.window), &f.frame);
    EXPECT_EQ(Library::s_vRenderFrames.size(), 1U);
    Send(f.window, WM_PAINT, 0, 0);
    EXPECT_EQ(f.Shown().At(16, 16), RED);
}

} // namespace
} // namespace KOVA::Quorvex::test
