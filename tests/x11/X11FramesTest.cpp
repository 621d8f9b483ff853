// Render frames in windows of a host: what is seen on the screen.

#include <algorithm>

#include <gtest/gtest.h>

#include <GL/gl.h>

#include "X11Host.h"
#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

using namespace KOVA::Quorvex;
using Library = KOVA::Quorvex::Quorvex;

namespace {

constexpr Color BLACK{0, 0, 0};

ColorRGBA ToRgba(const Color& color) {
    return {static_cast<float>(color.red) / 255.0F, static_cast<float>(color.green) / 255.0F,
            static_cast<float>(color.blue) / 255.0F, 1.0F};
}

// An unlit square of side 1 around the origin.
Mesh MakeSquare(const Color& color) {
    const Vector3f corners[] = {{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}, {-0.5F, 0.5F, 0.0F}};
    auto* data = new MeshData(4, GL_QUADS);
    data->CreateVertexArray(nullptr);
    for (unsigned int i = 0; i < 4; ++i) {
        data->SetVertex(i, corners[i]);
    }
    data->UpdateMetrics();
    Mesh mesh(*data);
    mesh.GetAttribute().SetColor(ToRgba(color));
    return mesh;
}

// A frame that shows a square on black, a quarter of the window wide. The first one starts the library.
struct FrameInWindow {
    FrameInWindow(X11Host& host, Window xid, const Color& color)
        : host(host), xid(xid), handle(AttachX11Window(xid, nullptr)) {
        const bool started = Library::GetRenderContext() != nullptr || Library::Init(handle);
        attached = started && frame.Init(handle, &view);
        view.SetProjectionOrthogonalRH(-2.0, 2.0, -2.0, 2.0, 0.1, 10.0);
        view.SetModelviewViewer({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F});
        frame.SetBackgroundColor(ToRgba(BLACK));
        frame.Add(MakeSquare(color));
        frame.Render();
    }
    ~FrameInWindow() {
        frame.Release();
        ReleaseWindow(handle);
    }
    FrameInWindow(const FrameInWindow&) = delete;
    FrameInWindow& operator=(const FrameInWindow&) = delete;

    // Waits until no pass is asked for any more and the screen shows a square of this many pixels, in the middle of the
    // window and on nothing but black.
    bool Shows(const Color& color, std::size_t side) {
        return ProcessUntil([&] {
            if (!Library::s_jobFast.empty() || !Library::s_jobQuality.empty()) {
                return false;
            }
            const Picture picture = host.Read(xid);
            const std::size_t all = picture.pixels.size();
            const bool inMiddle = picture.At(picture.width / 2, picture.height / 2) == color;
            return inMiddle && picture.Count(color) == side * side && picture.Count(BLACK) == all - side * side;
        });
    }
    bool IsScheduled() const {
        const auto& frames = Library::s_vRenderFrames;
        return std::find(frames.begin(), frames.end(), &frame) != frames.end();
    }

    X11Host& host;
    Window xid;
    HWND handle;
    View view;
    RenderFrame frame;
    bool attached;
};

class X11Frames : public testing::Test {
protected:
    X11Host host;
};

TEST_F(X11Frames, PictureIsOnTheScreenOfEveryWindow) {
    FrameInWindow plain(host, host.MakeWindow(0, 0, 200, 160), RED);
    FrameInWindow other(host, host.MakeWindow(300, 0, 120, 100), GREEN);
    FrameInWindow transparent(host, host.MakeArgbWindow(0, 300, 160, 240), RED);
    ASSERT_TRUE(plain.attached && other.attached && transparent.attached);
    EXPECT_TRUE(plain.Shows(RED, 50));
    EXPECT_TRUE(other.Shows(GREEN, 30));
    EXPECT_TRUE(transparent.Shows(RED, 40));

    // A new picture in one leaves the others as they are.
    other.view.SetProjectionOrthogonalRH(-1.0, 1.0, -1.0, 1.0, 0.1, 10.0);
    other.view.Render();
    EXPECT_TRUE(other.Shows(GREEN, 60));
    EXPECT_TRUE(plain.Shows(RED, 50));
    EXPECT_TRUE(transparent.Shows(RED, 40));
}

TEST_F(X11Frames, ResizedWindowShowsTheLastPictureAndThenANewOne) {
    for (const Window xid : {host.MakeWindow(0, 0, 200, 160), host.MakeArgbWindow(0, 300, 200, 160)}) {
        FrameInWindow window(host, xid, RED);
        ASSERT_TRUE(window.Shows(RED, 50));

        // The last picture, as large as its proportions allow.
        host.Resize(xid, 400, 160);
        EXPECT_TRUE(ProcessUntil([&window] { return window.frame.GetScreenWidth() == 400U; }));
        EXPECT_TRUE(window.Shows(RED, 50));
        window.frame.Render();
        EXPECT_TRUE(window.Shows(RED, 100));
        host.Resize(xid, 80, 80);
        EXPECT_TRUE(window.Shows(RED, 20)); // shrunk
        window.frame.Render();
        EXPECT_TRUE(window.Shows(RED, 20)); // drawn
    }
}

TEST_F(X11Frames, ExposedWindowShowsTheLastPictureAgain) {
    const Window xid = host.MakeWindow(0, 0, 200, 160);
    FrameInWindow window(host, xid, RED);
    ASSERT_TRUE(window.Shows(RED, 50));

    // What the other window covered has the host's background at first.
    const Window cover = host.MakeWindow(40, 40, 100, 100);
    ProcessAll();
    host.Destroy(cover);
    EXPECT_TRUE(window.Shows(RED, 50));

    XUnmapWindow(host.Connection(), xid);
    host.Sync();
    ProcessAll();
    EXPECT_EQ(window.frame.GetScreenWidth(), 200U) << "minimised";
    EXPECT_EQ(window.frame.GetScreenHeight(), 160U);
    XMapWindow(host.Connection(), xid);
    host.Sync();
    EXPECT_TRUE(window.Shows(RED, 50));
}

// The main window goes first, with a request pending, as a host does that closes its first document.
TEST_F(X11Frames, DestroyedWindowsLeaveTheOthersDrawing) {
    const Window xids[] = {host.MakeWindow(0, 0, 200, 160), host.MakeArgbWindow(300, 0, 120, 100),
                           host.MakeWindow(600, 0, 160, 160)};
    FrameInWindow main(host, xids[0], RED);
    FrameInWindow second(host, xids[1], GREEN);
    FrameInWindow third(host, xids[2], GREEN);
    ASSERT_TRUE(second.Shows(GREEN, 30) && third.Shows(GREEN, 40));
    for (FrameInWindow* window : {&main, &second}) {
        window->frame.Render();
        host.Destroy(window->xid);
        ASSERT_TRUE(ProcessUntil([&] { return !window->IsScheduled(); }));
        window->frame.Render();
        ProcessAll();
        EXPECT_TRUE(Library::s_jobFast.empty());
    }
    third.frame.Clear();
    third.frame.Add(MakeSquare(RED));
    third.view.Render();
    EXPECT_TRUE(third.Shows(RED, 40));
}

// The host forgets to release the frame before the handle.
TEST_F(X11Frames, ReleasedHandleTakesItsFrameOutOfTheScheduler) {
    FrameInWindow main(host, host.MakeWindow(0, 0, 100, 100), RED);
    FrameInWindow other(host, host.MakeWindow(200, 0, 200, 160), GREEN);
    ASSERT_TRUE(other.Shows(GREEN, 50));
    other.frame.Render();
    ReleaseWindow(other.handle);
    EXPECT_FALSE(other.IsScheduled());
    other.handle = nullptr;
    ProcessAll();
    main.frame.Render();
    EXPECT_TRUE(main.Shows(RED, 25));
}

} // namespace
