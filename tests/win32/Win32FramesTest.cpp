// Frames on a host's own windows: real messages through a subclassed procedure, ticks, passes.

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/WindowSystem.h>

#include "HostWindow.h"

namespace KOVA::Quorvex::test {
namespace {

class Win32Frames : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        m_view.SetProjectionOrthogonalRH(-2, 2, -2, 2, 1, 9);
        m_view.SetModelviewViewer({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
    }
    void Attach(RenderFrame& frame, HWND window, const ColorRGBA& background) {
        ASSERT_TRUE(frame.Init(window, &m_view));
        frame.SetBackgroundColor(background);
    }
    static Pixel OnScreen(HWND window, int x, int y) {
        const HDC deviceContext = GetDC(window);
        const COLORREF color = GetPixel(deviceContext, x, y);
        ReleaseDC(window, deviceContext);
        return {GetRValue(color), GetGValue(color), GetBValue(color)};
    }

    View m_view;
};

TEST_F(Win32Frames, ReleaseGivesTheWindowItsProcedureBack) {
    for (const bool unicode : {false, true}) {
        HostWindow window(40, 30, unicode);
        RenderFrame frame;
        EXPECT_FALSE(frame.Init(window.Handle(), nullptr));
        EXPECT_EQ(platform::GetWindowProcedure(window.Handle()), HostWindow::Procedure(unicode));
        Attach(frame, window.Handle(), ColorRGBA(1, 0, 0));
        EXPECT_EQ(platform::GetWindowProcedure(window.Handle()), RenderFrame::WndProcRenderFrame);
        EXPECT_EQ(GetWindowLongPtrA(window.Handle(), GWLP_USERDATA), reinterpret_cast<LONG_PTR>(&frame));
        frame.Release();
        EXPECT_EQ(platform::GetWindowProcedure(window.Handle()), HostWindow::Procedure(unicode));
        EXPECT_EQ(GetWindowLongPtrA(window.Handle(), GWLP_USERDATA), 0);
        EXPECT_EQ(IsWindowUnicode(window.Handle()) != 0, unicode);
    }
}

TEST_F(Win32Frames, CharactersReachTheHostUnchanged) {
    HostWindow window(40, 30, true);
    RenderFrame frame;
    Attach(frame, window.Handle(), ColorRGBA(1, 0, 0));
    constexpr WPARAM omega = 0x03A9; // in no western code page
    PostMessageW(window.Handle(), WM_CHAR, omega, 1);
    while (ProcessEvents()) {
    }
    ASSERT_NE(HostWindow::LastOf(WM_CHAR), nullptr);
    EXPECT_EQ(HostWindow::LastOf(WM_CHAR)->wParam, omega);
    frame.Release();
}

TEST_F(Win32Frames, PaintAndSizeShowTheLastPictureAndOnlySizeGoesOn) {
    HostWindow window(64, 64);
    RenderFrame frame;
    Attach(frame, window.Handle(), ColorRGBA(1, 0, 0));
    window.Show();
    ASSERT_TRUE(frame.Render(true, 64, 64));
    EXPECT_TRUE(PumpUntil([&] { return OnScreen(window.Handle(), 32, 32) == RED; }));
    frame.SetBackgroundColor(ColorRGBA(0, 0, 1)); // would be seen if the scene were drawn anew

    HostWindow::Forget();
    InvalidateRect(window.Handle(), nullptr, FALSE);
    UpdateWindow(window.Handle());
    EXPECT_EQ(HostWindow::CountOf(WM_PAINT), 0);
    EXPECT_EQ(GetUpdateRect(window.Handle(), nullptr, FALSE), 0) << "painted: nothing is left to paint";
    EXPECT_EQ(OnScreen(window.Handle(), 32, 32), RED);

    SetWindowPos(window.Handle(), nullptr, 0, 0, 128, 64, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(frame.GetScreenWidth(), 128U);
    EXPECT_EQ(frame.GetScreenHeight(), 64U);
    ASSERT_NE(HostWindow::LastOf(WM_SIZE), nullptr);
    EXPECT_EQ(HostWindow::LastOf(WM_SIZE)->lParam, MAKELPARAM(128, 64));
    EXPECT_TRUE(Library::s_jobFast.empty());
    EXPECT_TRUE(PumpUntil([&] { return OnScreen(window.Handle(), 64, 32) == RED; })) << "in the middle of the window";

    ShowWindow(window.Handle(), SW_MINIMIZE);
    EXPECT_EQ(frame.GetScreenWidth(), 128U);
    frame.Release();
}

TEST_F(Win32Frames, TicksOfTheSystemsTimerDrawFirstFastThenWell) {
    HostWindow window(64, 64);
    RenderFrame frame;
    Attach(frame, window.Handle(), ColorRGBA(0, 1, 0));
    window.Show();
    frame.Render();
    frame.Render();
    EXPECT_EQ(Library::s_jobFast.size(), 1U);
    Tick();
    EXPECT_TRUE(Library::s_jobFast.empty());
    EXPECT_EQ(Library::s_jobQuality.size(), 1U);
    Tick();
    EXPECT_TRUE(Library::s_jobQuality.empty());
    EXPECT_TRUE(PumpUntil([&] { return OnScreen(window.Handle(), 32, 32) == GREEN; }));

    frame.SetBackgroundColor(ColorRGBA(0, 0, 1));
    frame.Render();
    EXPECT_TRUE(PumpUntil([&] { return Library::s_jobFast.empty() && Library::s_jobQuality.empty(); }))
        << "the thread's own timer";
    frame.Release();
}

TEST_F(Win32Frames, DestroyedWindowReleasesItsFrame) {
    HostWindow window(64, 64);
    RenderFrame frame;
    Attach(frame, window.Handle(), ColorRGBA(1, 0, 0));
    frame.Render();
    window.Destroy();
    EXPECT_EQ(HostWindow::CountOf(WM_DESTROY), 1) << "the host hears of it";
    EXPECT_TRUE(Library::s_jobFast.empty());
    EXPECT_TRUE(Library::s_vRenderFrames.empty());
    EXPECT_TRUE(platform::MakeCurrent(frame.GetDeviceContext(), Library::GetRenderContext()))
        << "GL objects can still be freed";
    EXPECT_TRUE(platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContext()));
}

// The line is drawn straight onto the window, beside OpenGL.
TEST_F(Win32Frames, ProgressLineIsBlackOnBrightAndWhiteOnDark) {
    HostWindow window(64, 64);
    RenderFrame frame;
    Attach(frame, window.Handle(), ColorRGBA(0, 0, 1));
    window.Show();
    ASSERT_TRUE(frame.Render(true, 64, 64));
    EXPECT_TRUE(PumpUntil([&] { return OnScreen(window.Handle(), 32, 63) == BLUE; }));
    for (const bool black : {true, false}) {
        platform::DrawProgressLine(frame.GetDeviceContext(), 40, 63, black);
        const Pixel expected = black ? BLACK : WHITE;
        EXPECT_EQ(OnScreen(window.Handle(), 0, 63), expected);
        EXPECT_EQ(OnScreen(window.Handle(), 39, 63), expected);
        EXPECT_EQ(OnScreen(window.Handle(), 41, 63), BLUE);
        EXPECT_EQ(OnScreen(window.Handle(), 20, 62), BLUE);
    }
    frame.Release();
}

} // namespace
} // namespace KOVA::Quorvex::test
