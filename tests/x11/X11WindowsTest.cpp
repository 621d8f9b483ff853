// Windows of a host: how they become handles, what their procedures hear, and what is seen of the drawing.

#include <memory>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <X11/extensions/XTest.h>

#include "SeamWindow.h"
#include "X11Host.h"
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/WindowSystem.h>

using namespace KOVA::Quorvex;

namespace {

constexpr Color BLUE{0, 0, 255};

SeamWindow::Message Resized(int width, int height) {
    return {WM_SIZE, SIZE_RESTORED, width, height};
}

class X11Windows : public testing::Test {
protected:
    X11Host host;
};

TEST_F(X11Windows, AttachRefusesWhatCannotBeDrawnTo) {
    const Window window = host.MakeWindow(0, 0, 50, 50);
    XSetWindowAttributes none{};
    const Window inputOnly = XCreateWindow(host.Connection(), window, 0, 0, 10, 10, 0, 0, InputOnly, nullptr, 0, &none);
    host.Sync();

    EXPECT_EQ(AttachX11Window(window, "no such display:77"), nullptr);
    EXPECT_EQ(AttachX11Window(0, nullptr), nullptr);
    EXPECT_EQ(AttachX11Window(window + 0x1000, nullptr), nullptr);
    EXPECT_EQ(AttachX11Window(inputOnly, nullptr), nullptr);
    const HWND handle = AttachX11Window(window, nullptr);
    ASSERT_NE(handle, nullptr);

    // One display for the process, by whichever of its names.
    EXPECT_EQ(AttachX11Window(window, ":9999"), nullptr);
    const std::string screen0 = std::string(XDisplayString(host.Connection())) + ".0";
    EXPECT_EQ(AttachX11Window(window, screen0.c_str()), handle);
}

TEST_F(X11Windows, AttachingTwiceTakesTwoReleases) {
    const Window xid = host.MakeWindow(0, 0, 60, 40);
    auto window = std::make_unique<SeamWindow>(xid);
    EXPECT_EQ(AttachX11Window(xid, nullptr), window->Handle());
    ReleaseWindow(window->Handle());
    EXPECT_TRUE(window->messages.empty());
    EXPECT_TRUE(window->Fill(GREEN));

    // The host's window is left as it is, and nothing reaches the procedure any more.
    window->Release();
    EXPECT_EQ(window->messages, std::vector<SeamWindow::Message>({{WM_DESTROY, 0, 0, 0}}));
    host.Resize(xid, 70, 50);
    ProcessAll();
    EXPECT_EQ(window->messages.size(), 1U);
    EXPECT_TRUE(host.Children(xid).empty());

    // And can be attached anew, though it had a surface before.
    window = std::make_unique<SeamWindow>(xid);
    EXPECT_TRUE(window->Fill(BLUE));
    EXPECT_EQ(host.Read(xid).Count(BLUE), 70U * 50U);
}

TEST_F(X11Windows, OneContextDrawsToAllWindows) {
    const Window xids[] = {host.MakeWindow(0, 0, 100, 80), host.MakeWindow(200, 0, 120, 90),
                           host.MakeArgbWindow(400, 0, 90, 60)};
    SeamWindow first(xids[0]);
    SeamWindow second(xids[1]);
    SeamWindow third(xids[2]);
    for (int pass = 0; pass < 3; ++pass) {
        ASSERT_TRUE(first.Fill(RED));
        ASSERT_TRUE(second.Fill(GREEN));
        ASSERT_TRUE(third.Fill(BLUE));
    }
    EXPECT_EQ(host.Read(xids[0]).Count(RED), 100U * 80U);
    EXPECT_EQ(host.Read(xids[1]).Count(GREEN), 120U * 90U);
    EXPECT_EQ(host.Read(xids[2]).Count(BLUE), 90U * 60U);

    // The first picture after a resize has the new size, before the library has heard of it.
    host.Resize(xids[1], 190, 200);
    ASSERT_TRUE(second.Fill(RED));
    EXPECT_EQ(host.Read(xids[1]).Count(RED), 190U * 200U);
    unsigned int width = 0;
    unsigned int height = 0;
    EXPECT_TRUE(platform::GetClientSize(second.Handle(), &width, &height));
    EXPECT_EQ(width, 190U);
    EXPECT_EQ(height, 200U);
}

TEST_F(X11Windows, OffscreenWindowsShareTheDisplayOfWindows) {
    const Window xid = host.MakeWindow(0, 0, 64, 64);
    SeamWindow window(xid);
    ASSERT_TRUE(window.Fill(RED));
    const HWND hidden = CreateOffscreenWindow(32, 16);
    const HDC deviceContext = platform::AcquireDeviceContext(hidden);
    ASSERT_TRUE(platform::SetPixelFormat(deviceContext, {}));
    const HGLRC context = platform::CreateContext(deviceContext, nullptr);
    ASSERT_TRUE(platform::MakeCurrent(deviceContext, context));
    glClearColor(0.0F, 1.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    unsigned char pixel[4] = {};
    glReadPixels(31, 15, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    EXPECT_EQ((Color{pixel[0], pixel[1], pixel[2]}), GREEN);
    EXPECT_EQ(host.Read(xid).Count(RED), 64U * 64U);

    platform::DeleteContext(context);
    EXPECT_FALSE(platform::MakeCurrent(deviceContext, context)) << "a deleted context";
    platform::ReleaseDeviceContext(hidden, deviceContext);
    ReleaseWindow(hidden);
}

TEST_F(X11Windows, TransparentWindowGetsAChildThatFollowsIt) {
    const Window xid = host.MakeArgbWindow(10, 10, 100, 80);
    XSelectInput(host.Connection(), xid, ButtonPressMask);
    {
        SeamWindow window(xid);
        ASSERT_TRUE(window.Fill(RED));
        EXPECT_EQ(host.Read(xid).Count(RED), 100U * 80U);

        host.Resize(xid, 200, 150);
        ASSERT_TRUE(ProcessUntil([&] { return !window.messages.empty(); }));
        EXPECT_EQ(window.messages.front(), Resized(200, 150));
        ASSERT_TRUE(window.Fill(GREEN));
        EXPECT_EQ(host.Read(xid).Count(GREEN), 200U * 150U);

        // A click goes to the host's window, at its place there.
        XTestFakeMotionEvent(host.Connection(), -1, 60, 70, CurrentTime);
        XTestFakeButtonEvent(host.Connection(), 1, True, CurrentTime);
        XTestFakeButtonEvent(host.Connection(), 1, False, CurrentTime);
        host.Sync();
        XEvent event;
        ASSERT_TRUE(XCheckWindowEvent(host.Connection(), xid, ButtonPressMask, &event));
        EXPECT_EQ(event.xbutton.x, 50);
        EXPECT_EQ(event.xbutton.y, 60);

        // It is the child that is exposed, not the host's window.
        window.messages.clear();
        XUnmapWindow(host.Connection(), xid);
        XMapWindow(host.Connection(), xid);
        host.Sync();
        ProcessAll();
        ASSERT_FALSE(window.messages.empty());
        EXPECT_EQ(window.messages.back().message, WM_PAINT);
    }
    host.Sync();
    EXPECT_TRUE(host.Children(xid).empty()) << "our child stays after the release";
}

TEST_F(X11Windows, ManyChangesMakeOneMessageEach) {
    const Window xid = host.MakeWindow(100, 100, 100, 80);
    SeamWindow window(xid);
    ProcessAll();
    window.messages.clear();

    // Of a resize by the mouse only the last size counts; exposing in pieces is one paint, a move nothing.
    for (int i = 1; i <= 20; ++i) {
        XResizeWindow(host.Connection(), xid, static_cast<unsigned int>(100 + i), 80);
    }
    for (int i = 0; i < 5; ++i) {
        XClearArea(host.Connection(), xid, i * 10, 0, 5, 5, True);
    }
    XMoveWindow(host.Connection(), xid, 120, 90);
    host.Sync();
    ProcessAll();
    EXPECT_EQ(window.messages, std::vector<SeamWindow::Message>({Resized(120, 80), {WM_PAINT, 0, 0, 0}}));

    window.messages.clear();
    XUnmapWindow(host.Connection(), xid);
    host.Resize(xid, 150, 60);
    ProcessAll();
    EXPECT_EQ(window.messages, std::vector<SeamWindow::Message>({{WM_SIZE, SIZE_MINIMIZED, 0, 0}}));

    window.messages.clear();
    XMapWindow(host.Connection(), xid);
    host.Sync();
    ProcessAll();
    EXPECT_EQ(window.messages, std::vector<SeamWindow::Message>({Resized(150, 60), {WM_PAINT, 0, 0, 0}}));
}

TEST_F(X11Windows, VanishingWindowIsHarmless) {
    const Window xids[] = {host.MakeWindow(0, 0, 50, 50), host.MakeArgbWindow(100, 0, 50, 50),
                           host.MakeWindow(200, 0, 50, 50)};
    SeamWindow plain(xids[0]);
    SeamWindow transparent(xids[1]);
    SeamWindow other(xids[2]);
    for (SeamWindow* window : {&plain, &transparent}) {
        ASSERT_TRUE(window->Fill(RED));
        unsigned int width = 7;
        unsigned int height = 7;
        host.Destroy(window == &plain ? xids[0] : xids[1]);

        // Before and after the library has heard of it; the window is the current one all the time.
        EXPECT_FALSE(platform::GetClientSize(window->Handle(), &width, &height));
        platform::SwapWindowBuffers(window->DeviceContext());
        platform::DrawProgressLine(window->DeviceContext(), 10, 10, true);
        window->messages.clear();
        ASSERT_TRUE(ProcessUntil([&] { return !window->messages.empty(); }));
        EXPECT_EQ(window->messages, std::vector<SeamWindow::Message>({{WM_DESTROY, 0, 0, 0}}));
        EXPECT_FALSE(platform::GetClientSize(window->Handle(), &width, &height));
        EXPECT_EQ(width, 7U);
        EXPECT_EQ(platform::AcquireDeviceContext(window->Handle()), nullptr);
        EXPECT_FALSE(platform::SetPixelFormat(window->DeviceContext(), {}));

        // OpenGL objects can still be freed.
        EXPECT_TRUE(window->MakeCurrent() || platform::MakeCurrent(window->DeviceContext(), nullptr));
        GLuint texture = 0;
        ASSERT_TRUE(other.Fill(GREEN));
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        EXPECT_TRUE(glIsTexture(texture));
        glDeleteTextures(1, &texture);
    }
    EXPECT_EQ(host.Read(xids[2]).Count(GREEN), 50U * 50U);
}

TEST_F(X11Windows, ProcedureMayReleaseAndAttachWindows) {
    const Window xids[] = {host.MakeWindow(0, 0, 50, 50), host.MakeWindow(100, 0, 50, 50),
                           host.MakeWindow(200, 0, 50, 50), host.MakeWindow(300, 0, 50, 50)};
    SeamWindow first(xids[0]);
    SeamWindow second(xids[1]);
    SeamWindow third(xids[2]);
    for (SeamWindow* window : {&first, &second, &third}) {
        ASSERT_TRUE(window->Fill(RED));
    }
    std::vector<std::unique_ptr<SeamWindow>> attached;
    first.onMessage = [&](UINT message) {
        if (message == WM_DESTROY && attached.empty()) {
            first.Release(); // itself
            third.Release(); // one that is later in the list, with a message of its own waiting
            attached.push_back(std::make_unique<SeamWindow>(xids[3]));
        }
    };
    host.Resize(xids[2], 80, 80);
    host.Destroy(xids[0]);
    ASSERT_TRUE(ProcessUntil([&] { return !attached.empty(); }));
    ProcessAll();
    EXPECT_EQ(third.messages.back().message, WM_DESTROY);
    EXPECT_TRUE(second.Fill(GREEN));
    EXPECT_TRUE(attached.front()->Fill(BLUE));
    EXPECT_EQ(host.Read(xids[3]).Count(BLUE), 50U * 50U);
}

TEST_F(X11Windows, FocusIsFoundThroughTheToolkitsWindows) {
    const Window top = host.MakeWindow(0, 0, 200, 200);
    const Window panel = host.MakeWindow(10, 10, 150, 150, top);
    const Window view = host.MakeWindow(10, 10, 100, 100, panel);
    const Window inside = host.MakeWindow(10, 10, 20, 20, view);
    const Window proxy = XCreateSimpleWindow(host.Connection(), top, -1, -1, 1, 1, 0, 0, 0);
    XMapWindow(host.Connection(), proxy);
    const Window entry = host.MakeWindow(170, 10, 20, 20, top);
    const Window foreign = host.MakeWindow(300, 0, 50, 50);
    SeamWindow window(view);

    const auto focusOn = [&](Window focus) {
        XSetInputFocus(host.Connection(), focus, RevertToNone, CurrentTime);
        host.Sync();
        return platform::FocusWindow();
    };
    for (const Window focus : {view, inside, panel, top, proxy}) {
        EXPECT_EQ(focusOn(focus), window.Handle()) << "window " << focus - top << " after the top level";
    }
    for (const Window focus : {entry, foreign, Window{PointerRoot}, Window{None}}) {
        EXPECT_EQ(focusOn(focus), nullptr);
    }
}

TEST_F(X11Windows, ProgressLineLiesOnThePictureUntilTheSwap) {
    for (const Window xid : {host.MakeWindow(0, 0, 100, 50), host.MakeArgbWindow(200, 0, 100, 50)}) {
        SeamWindow window(xid);
        ASSERT_TRUE(window.Fill(RED));
        platform::DrawProgressLine(window.DeviceContext(), 60, 49, true);
        platform::DrawProgressLine(window.DeviceContext(), 30, 10, false);
        ProcessAll();
        const Picture picture = host.Read(xid);
        EXPECT_EQ(picture.At(0, 49), (Color{0, 0, 0}));
        EXPECT_EQ(picture.At(59, 49), (Color{0, 0, 0}));
        EXPECT_EQ(picture.At(62, 49), RED);
        EXPECT_EQ(picture.At(29, 10), (Color{255, 255, 255}));
        EXPECT_NEAR(static_cast<double>(picture.Count(RED)), 100.0 * 50 - 90, 2.0);
        ASSERT_TRUE(window.Fill(RED));
        EXPECT_EQ(host.Read(xid).Count(RED), 100U * 50U);
    }
}

} // namespace
