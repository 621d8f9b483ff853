// How the library gets along with what else the process does with X and OpenGL.

#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <GL/glx.h>

#include "SeamWindow.h"
#include "X11Host.h"
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/WindowSystem.h>

using namespace KOVA::Quorvex;

namespace {

int s_errorsOfFirst = 0;
int s_errorsOfSecond = 0;

int FirstHandler(Display* /*display*/, XErrorEvent* /*error*/) {
    ++s_errorsOfFirst;
    return 0;
}

int SecondHandler(Display* /*display*/, XErrorEvent* /*error*/) {
    ++s_errorsOfSecond;
    return 0;
}

TEST(X11Process, ErrorHandlerStaysTheHosts) {
    X11Host host;
    const Window xid = host.MakeWindow(0, 0, 50, 50);
    const auto failOnHostsConnection = [&] {
        XMapWindow(host.Connection(), xid + 0x1000);
        host.Sync();
    };
    XSetErrorHandler(FirstHandler);
    SeamWindow window(xid);
    EXPECT_EQ(AttachX11Window(xid + 0x1000, nullptr), nullptr);
    failOnHostsConnection();
    EXPECT_EQ(s_errorsOfFirst, 1) << "the host's own errors, and no others";

    // The host exchanges its handler while the library works; errors of ours that are still on the way are not its.
    EXPECT_EQ(XSetErrorHandler(SecondHandler), FirstHandler);
    ASSERT_TRUE(window.Fill({0, 0, 255}));
    host.Destroy(xid);
    platform::DrawProgressLine(window.DeviceContext(), 10, 10, true);
    window.Fill({0, 255, 0});
    ProcessAll();
    failOnHostsConnection();
    EXPECT_EQ(s_errorsOfFirst, 1);
    EXPECT_EQ(s_errorsOfSecond, 1);
    EXPECT_EQ(XSetErrorHandler(nullptr), SecondHandler);
}

TEST(X11Process, WindowsNeedADisplayServer) {
    unsetenv("DISPLAY");
    EXPECT_EQ(AttachX11Window(1, nullptr), nullptr);
    EXPECT_EQ(AttachX11Window(1, ":9999"), nullptr);
    EXPECT_EQ(platform::FocusWindow(), nullptr);
}

int s_warnings = 0;
std::string s_warning;

// A host that draws with GLX on the same thread and forgets to put its context away.
TEST(X11Process, ForeignContextIsReportedOnce) {
    X11Host host;
    const Window xid = host.MakeWindow(0, 0, 50, 50);
    int wanted[] = {GLX_RGBA, GLX_DOUBLEBUFFER, None};
    XVisualInfo* visual = glXChooseVisual(host.Connection(), XDefaultScreen(host.Connection()), wanted);
    if (visual == nullptr) {
        GTEST_SKIP() << "the X server has no GLX";
    }
    const GLXContext foreign = glXCreateContext(host.Connection(), visual, nullptr, True);
    const GLXPixmap nowhere =
        glXCreateGLXPixmap(host.Connection(), visual,
                           XCreatePixmap(host.Connection(), xid, 16, 16, static_cast<unsigned int>(visual->depth)));
    SeamWindow window(xid);
    ASSERT_TRUE(window.Fill({255, 0, 0}));
    ASSERT_TRUE(MakeContextCurrent(nullptr, nullptr)); // without this GLX is refused, and X ends the process

    SetWarningHandler(
        [](const char*, const char* text, void*) {
            ++s_warnings;
            s_warning = text;
        },
        nullptr);
    ASSERT_TRUE(glXMakeCurrent(host.Connection(), nowhere, foreign));
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(window.Fill({0, 255, 0}));
    }
    EXPECT_EQ(s_warnings, 1);
    EXPECT_NE(s_warning.find("glXMakeCurrent"), std::string::npos) << s_warning;
    EXPECT_EQ(glXGetCurrentContext(), foreign) << "the host's context is left in force";

    ASSERT_TRUE(glXMakeCurrent(host.Connection(), None, nullptr));
    EXPECT_TRUE(window.Fill({0, 0, 255}));
    EXPECT_EQ(host.Read(xid).Count({0, 0, 255}), 50U * 50U);
    glXDestroyContext(host.Connection(), foreign);
    XFree(visual);
    SetWarningHandler(nullptr, nullptr);
}

// The kind of the first window that is drawn to decides for the process. In a process of its own, as the other tests
// have decided.
TEST(X11ProcessDeathTest, OffscreenFirstMeansNoWindows) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto offscreenThenWindow = [] {
        X11Host host;
        const HDC hidden = platform::AcquireDeviceContext(CreateOffscreenWindow(16, 16));
        const HDC window = platform::AcquireDeviceContext(AttachX11Window(host.MakeWindow(0, 0, 9, 9), nullptr));
        const bool hiddenWorks = platform::SetPixelFormat(hidden, {});
        const bool windowWorks = platform::SetPixelFormat(window, {});
        std::_Exit(hiddenWorks && window != nullptr && !windowWorks ? 0 : 1);
    };
    EXPECT_EXIT(offscreenThenWindow(), testing::ExitedWithCode(0), "");
}

// The look-up of the system itself answers every name.
TEST(X11Process, EntryPointsThatDoNotExistAreNull) {
    X11Host host;
    SeamWindow window(host.MakeWindow(0, 0, 50, 50));
    ASSERT_TRUE(window.MakeCurrent());
    EXPECT_NE(platform::GetGlProcedure("glBindBufferARB"), nullptr);
    EXPECT_NE(platform::GetGlProcedure("glTexImage3DEXT"), nullptr);
    EXPECT_EQ(platform::GetGlProcedure("glUnMapBufferARB"), nullptr);
    EXPECT_EQ(platform::GetGlProcedure("glNoSuchThing"), nullptr);
}

} // namespace
