// A host in plain Xlib: windows and event loop are its own, the library draws into them.
// Usage: x11 [--windows N] [FILE.stl]. Drag with the left button to turn, turn the wheel to zoom, q or closing a window
// ends it. Exit code 0 done, 1 failed, 2 wrong usage.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <poll.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

using namespace KOVA::Quorvex;

namespace {

constexpr int WIDTH = 640; // of a window at first
constexpr int HEIGHT = 480;
constexpr float OPENING_ANGLE = 0.8F; // radians
constexpr float ZOOM_STEP = 0.1F;     // of the distance to the part

// One window with its camera and its picture.
struct Viewport {
    Window window = 0;
    HWND handle = nullptr;
    View view;
    RenderFrame frame;
    int width = WIDTH;
    int height = HEIGHT;
    int mouseX = 0;
    int mouseY = 0;
};

class Host {
public:
    Host(int windows, const char* title);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void Show(const Mesh& mesh);
    void Run();

private:
    void OpenWindow(const char* title);
    Viewport* Find(Window window);
    bool HandleOneEvent();
    void HandleButton(Viewport& viewport, const XButtonEvent& event);
    void Drag(Viewport& viewport, const XMotionEvent& event);
    void Zoom(Viewport& viewport, float step);
    void Quit();

    Display* m_display;
    Atom m_deleteWindow;
    std::list<Viewport> m_viewports; // a list: frames must not move
    bool m_quit = false;
};

Host::Host(int windows, const char* title) : m_display(XOpenDisplay(nullptr)) {
    if (m_display == nullptr) {
        throw std::runtime_error("cannot open the display");
    }
    m_deleteWindow = XInternAtom(m_display, "WM_DELETE_WINDOW", False);
    for (int i = 0; i < windows; ++i) {
        OpenWindow(title);
    }
    // The library finds the windows on a connection of its own: they have to exist by then.
    XSync(m_display, False);
    for (Viewport& viewport : m_viewports) {
        viewport.handle = AttachX11Window(viewport.window, nullptr);
    }
    if (!Quorvex::Init(m_viewports.front().handle)) {
        throw std::runtime_error("cannot start OpenGL");
    }
    // While a quality pass is drawn, the library asks here for input that should interrupt it.
    SetMessagePump([](void* host) { return static_cast<Host*>(host)->HandleOneEvent(); }, this);
}

// The frames, with the meshes in them, go before the OpenGL contexts, and those before the windows.
Host::~Host() {
    SetMessagePump(nullptr, nullptr);
    std::vector<std::pair<Window, HWND>> windows;
    for (const Viewport& viewport : m_viewports) {
        windows.emplace_back(viewport.window, viewport.handle);
    }
    m_viewports.clear();
    Quorvex::Release();
    for (const auto& [window, handle] : windows) {
        ReleaseWindow(handle);
        XDestroyWindow(m_display, window);
    }
    XCloseDisplay(m_display);
}

void Host::OpenWindow(const char* title) {
    // No background: the server would show it for a moment before each picture of a window that is being resized.
    XSetWindowAttributes attributes{};
    attributes.event_mask = KeyPressMask | ButtonPressMask | Button1MotionMask | StructureNotifyMask;
    const int index = static_cast<int>(m_viewports.size());
    const int x = index % 2 * WIDTH; // two in a row
    const int y = index / 2 * HEIGHT;
    const Window window = XCreateWindow(m_display, XDefaultRootWindow(m_display), x, y, WIDTH, HEIGHT, 0,
                                        CopyFromParent, InputOutput, nullptr, CWEventMask, &attributes);
    XStoreName(m_display, window, title);
    XSetWMProtocols(m_display, window, &m_deleteWindow, 1);
    XMapWindow(m_display, window);
    m_viewports.emplace_back().window = window;
}

void Host::Show(const Mesh& mesh) {
    mesh.GetData().Update(STORAGE_VBO); // once, for all frames: their copies of the mesh share the data
    const float radius = mesh.GetRadius() > 0.0F ? mesh.GetRadius() : 1.0F;
    for (Viewport& viewport : m_viewports) {
        if (!viewport.frame.Init(viewport.handle, &viewport.view)) {
            throw std::runtime_error("cannot draw to the window");
        }
        viewport.frame.Add(mesh);
        viewport.frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer of a right-handed view
        viewport.view.SetProjectionR(OPENING_ANGLE, 0.01F * radius, 100.0F * radius);
        viewport.view.SetModelviewViewer(mesh.GetCenter() + Vector3f(1.0F, 0.7F, 2.0F) * (1.25F * radius),
                                         mesh.GetCenter(), {0.0F, 1.0F, 0.0F});
        viewport.view.Render();
    }
}

// Both sides are served before the program sleeps, as both may have read events already: neither descriptor tells of
// those.
void Host::Run() {
    pollfd descriptors[] = {{XConnectionNumber(m_display), POLLIN, 0}, {EventDescriptor(), POLLIN, 0}};
    while (!m_quit) {
        while (HandleOneEvent()) {
        }
        ProcessEvents();
        if (!m_quit && XPending(m_display) == 0) {
            poll(descriptors, 2, -1);
        }
    }
}

Viewport* Host::Find(Window window) {
    for (Viewport& viewport : m_viewports) {
        if (viewport.window == window) {
            return &viewport;
        }
    }
    return nullptr;
}

bool Host::HandleOneEvent() {
    if (XPending(m_display) == 0) {
        return false;
    }
    XEvent event;
    XNextEvent(m_display, &event);
    Viewport* viewport = Find(event.xany.window);
    if (viewport == nullptr) {
        return true;
    }
    switch (event.type) {
    case ConfigureNotify:
        viewport->width = event.xconfigure.width;
        viewport->height = event.xconfigure.height;
        viewport->view.Render(); // the library shows the last picture, scaled; this asks for a sharp one
        break;
    case ButtonPress:
        HandleButton(*viewport, event.xbutton);
        break;
    case MotionNotify:
        Drag(*viewport, event.xmotion);
        break;
    case KeyPress:
        if (XLookupKeysym(&event.xkey, 0) == XK_q) {
            Quit();
        }
        break;
    case ClientMessage:
        if (static_cast<Atom>(event.xclient.data.l[0]) == m_deleteWindow) {
            Quit();
        }
        break;
    default:
        break;
    }
    return true;
}

void Host::HandleButton(Viewport& viewport, const XButtonEvent& event) {
    viewport.mouseX = event.x;
    viewport.mouseY = event.y;
    if (event.button == Button4 || event.button == Button5) { // the wheel
        Zoom(viewport, event.button == Button4 ? ZOOM_STEP : -ZOOM_STEP);
    }
}

void Host::Drag(Viewport& viewport, const XMotionEvent& event) {
    viewport.view.ApplyTrackball(viewport.mouseX, viewport.mouseY, event.x, event.y, viewport.width, viewport.height,
                                 viewport.frame.GetCenter());
    viewport.mouseX = event.x;
    viewport.mouseY = event.y;
    viewport.view.Render(); // every frame that looks through this view is drawn again
}

void Host::Zoom(Viewport& viewport, float step) {
    const float radius = viewport.frame.GetRadius();
    const float distance = (viewport.view.getPosition() - viewport.frame.GetCenter()).Length();
    const float forward = distance * step;
    if (distance - forward > 0.1F * radius && distance - forward < 50.0F * radius) {
        viewport.view.TranslateViewer({0.0F, 0.0F, -forward}); // the view looks along -z
        viewport.view.Render();
    }
}

// A pass may be under way further up the stack: it ends at its next report, and the event loop after it.
void Host::Quit() {
    m_quit = true;
    for (Viewport& viewport : m_viewports) {
        viewport.frame.AbortRendering();
    }
}

Mesh Load(const char* path) {
    if (path == nullptr) {
        return MeshBuilder::BuildBox({-1.0F, -0.6F, -0.8F}, {1.0F, 0.6F, 0.8F});
    }
    Mesh mesh = MeshReader::ReadSTLTolerant(path);
    if (MeshReader::GetError() != MR_NO_ERROR || mesh.GetData().GetNumVertices() == 0) {
        throw std::runtime_error(std::string("cannot read ") + path);
    }
    return mesh;
}

int Usage() {
    std::fputs("usage: x11 [--windows N] [FILE.stl]\n", stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    int windows = 1;
    int next = 1;
    if (next < argc && std::strcmp(argv[next], "--windows") == 0) {
        windows = next + 1 < argc ? std::atoi(argv[next + 1]) : 0;
        next += 2;
    }
    const char* path = next < argc ? argv[next] : nullptr;
    if (windows < 1 || next + 1 < argc || (path != nullptr && path[0] == '-')) {
        return Usage();
    }
    try {
        Host host(windows, path != nullptr ? path : "Quorvex");
        host.Show(Load(path));
        host.Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "x11: %s\n", error.what());
        return 1;
    }
    return 0;
}
