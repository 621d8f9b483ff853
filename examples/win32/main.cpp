// A host in plain Win32: windows and message loop are its own, the library draws into them.
// Usage: win32 [--windows N] [FILE.stl]. Drag with the left button to turn, turn the wheel to zoom, q or closing a
// window ends it. Exit code 0 done, 1 failed, 2 wrong usage.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <stdexcept>
#include <string>

#include <windows.h>
#include <windowsx.h>

#include <Quorvex/Quorvex.h>

using namespace KOVA::Quorvex;

namespace {

constexpr int WIDTH = 640; // of a window's client area at first
constexpr int HEIGHT = 480;
constexpr float OPENING_ANGLE = 0.8F; // radians
constexpr float ZOOM_STEP = 0.1F;     // of the distance to the part
constexpr char CLASS_NAME[] = "QuorvexExample";

// One window with its camera and its picture.
struct Viewport {
    HWND window = nullptr;
    View view;
    RenderFrame frame;
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
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OpenWindow(const char* title);
    Viewport* Find(HWND window);
    bool Handle(Viewport& viewport, UINT message, WPARAM wParam, LPARAM lParam);
    void Drag(Viewport& viewport, int x, int y);
    void Zoom(Viewport& viewport, float step);
    void Quit();

    static Host* s_current;          // window procedures belong to no object
    std::list<Viewport> m_viewports; // a list: frames must not move
};

Host* Host::s_current = nullptr;

Host::Host(int windows, const char* title) {
    s_current = this;
    WNDCLASSA description{};
    description.style = CS_OWNDC; // the library keeps a window's device context
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    description.lpszClassName = CLASS_NAME; // no background brush: it would flicker while the window is being resized
    if (RegisterClassA(&description) == 0) {
        throw std::runtime_error("cannot register the window class");
    }
    for (int i = 0; i < windows; ++i) {
        OpenWindow(title);
    }
    if (!Quorvex::Init(m_viewports.front().window)) {
        throw std::runtime_error("cannot start OpenGL");
    }
}

// The frames, with the meshes in them, go before the OpenGL contexts, and those before the windows.
Host::~Host() {
    std::list<HWND> windows;
    for (const Viewport& viewport : m_viewports) {
        windows.push_back(viewport.window);
    }
    m_viewports.clear();
    Quorvex::Release();
    for (HWND window : windows) {
        DestroyWindow(window);
    }
    s_current = nullptr;
}

void Host::OpenWindow(const char* title) {
    constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    RECT outside{0, 0, WIDTH, HEIGHT};
    AdjustWindowRect(&outside, style, FALSE);
    const int index = static_cast<int>(m_viewports.size());
    const int x = index % 2 * WIDTH; // two in a row
    const int y = index / 2 * HEIGHT;
    HWND window = CreateWindowExA(0, CLASS_NAME, title, style, x, y, outside.right - outside.left,
                                  outside.bottom - outside.top, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (window == nullptr) {
        throw std::runtime_error("cannot open a window");
    }
    m_viewports.emplace_back().window = window;
}

void Host::Show(const Mesh& mesh) {
    mesh.GetData().Update(STORAGE_VBO); // once, for all frames: their copies of the mesh share the data
    const float radius = mesh.GetRadius() > 0.0F ? mesh.GetRadius() : 1.0F;
    for (Viewport& viewport : m_viewports) {
        if (!viewport.frame.Init(viewport.window, &viewport.view)) {
            throw std::runtime_error("cannot draw to the window");
        }
        viewport.frame.Add(mesh);
        viewport.frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer of a right-handed view
        viewport.view.SetProjectionR(OPENING_ANGLE, 0.01F * radius, 100.0F * radius);
        viewport.view.SetModelviewViewer(mesh.GetCenter() + Vector3f(1.0F, 0.7F, 2.0F) * (1.25F * radius),
                                         mesh.GetCenter(), {0.0F, 1.0F, 0.0F});
        viewport.view.Render();
        ShowWindow(viewport.window, SW_SHOWNORMAL);
    }
}

// An ordinary message loop: the library's timer ticks in it.
void Host::Run() {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

Viewport* Host::Find(HWND window) {
    for (Viewport& viewport : m_viewports) {
        if (viewport.window == window) {
            return &viewport;
        }
    }
    return nullptr;
}

// The library has put its own procedure in front: painting does not come here, all else does.
LRESULT CALLBACK Host::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Viewport* viewport = s_current != nullptr ? s_current->Find(window) : nullptr;
    const bool handled = viewport != nullptr && s_current->Handle(*viewport, message, wParam, lParam);
    return handled ? 0 : DefWindowProcA(window, message, wParam, lParam);
}

bool Host::Handle(Viewport& viewport, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        viewport.view.Render(); // the library shows the last picture, scaled; this asks for a sharp one
        return true;
    case WM_LBUTTONDOWN:
        viewport.mouseX = GET_X_LPARAM(lParam);
        viewport.mouseY = GET_Y_LPARAM(lParam);
        SetCapture(viewport.window); // the drag goes on outside the window
        return true;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return true;
    case WM_MOUSEMOVE:
        if ((wParam & MK_LBUTTON) != 0) {
            Drag(viewport, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        }
        return true;
    case WM_MOUSEWHEEL:
        Zoom(viewport, GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? ZOOM_STEP : -ZOOM_STEP);
        return true;
    case WM_CHAR:
        if (wParam == 'q') {
            Quit();
        }
        return true;
    case WM_CLOSE:
        Quit();
        return true;
    default:
        return false;
    }
}

void Host::Drag(Viewport& viewport, int x, int y) {
    viewport.view.ApplyTrackball(viewport.mouseX, viewport.mouseY, x, y,
                                 static_cast<int>(viewport.frame.GetScreenWidth()),
                                 static_cast<int>(viewport.frame.GetScreenHeight()), viewport.frame.GetCenter());
    viewport.mouseX = x;
    viewport.mouseY = y;
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

// A pass may be under way further up the stack: it ends at its next report, and the message loop after it.
void Host::Quit() {
    for (Viewport& viewport : m_viewports) {
        viewport.frame.AbortRendering();
    }
    PostQuitMessage(0);
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
    std::fputs("usage: win32 [--windows N] [FILE.stl]\n", stderr);
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
        std::fprintf(stderr, "win32: %s\n", error.what());
        return 1;
    }
    return 0;
}
