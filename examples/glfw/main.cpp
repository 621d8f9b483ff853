// A host in GLFW, which makes the window and tells of the mouse; the library draws. docs/EMBEDDING.md explains each
// step. Usage: glfw [FILE.stl]. Drag to turn, turn the wheel to zoom, Escape ends it. Exit code 0 done, 1 failed.

#include <cstdio>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#define GLFW_EXPOSE_NATIVE_X11
#include <GLFW/glfw3native.h>

using namespace KOVA::Quorvex;

namespace {

constexpr double WAIT = 0.01; // seconds for which the loop sleeps: GLFW has no place for the library's descriptor

struct Host {
    View view;
    RenderFrame frame;
    double mouseX = 0.0;
    double mouseY = 0.0;
};

Host& HostOf(GLFWwindow* window) {
    return *static_cast<Host*>(glfwGetWindowUserPointer(window));
}

// Places come with their events: glfwGetCursorPos tells where the mouse is by now, ahead of what a busy program hears.
void MoveMouse(GLFWwindow* window, double x, double y) {
    Host& host = HostOf(window);
    if (glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_LEFT) == GLFW_PRESS) {
        int width = 0;
        int height = 0;
        glfwGetWindowSize(window, &width, &height);
        host.view.ApplyTrackball(static_cast<int>(host.mouseX), static_cast<int>(host.mouseY), static_cast<int>(x),
                                 static_cast<int>(y), width, height, host.frame.GetCenter());
        host.view.Render(); // ends a quality pass that is under way
    }
    host.mouseX = x;
    host.mouseY = y;
}

void Zoom(GLFWwindow* window, double /*sideways*/, double steps) {
    Host& host = HostOf(window);
    const float distance = (host.view.getPosition() - host.frame.GetCenter()).Length();
    host.view.TranslateViewer({0.0F, 0.0F, -0.1F * distance * static_cast<float>(steps)});
    host.view.Render();
}

void Resize(GLFWwindow* window, int /*width*/, int /*height*/) {
    HostOf(window).view.Render(); // the library shows the last picture, scaled; this asks for a sharp one
}

// A pass may be under way further up the stack: it ends at its next report.
void Close(GLFWwindow* window) {
    glfwSetWindowShouldClose(window, GLFW_TRUE);
    HostOf(window).frame.AbortRendering();
}

void PressKey(GLFWwindow* window, int key, int /*code*/, int action, int /*modifiers*/) {
    if (key == GLFW_KEY_ESCAPE && action == GLFW_PRESS) {
        Close(window);
    }
}

void Show(Host& host, const Mesh& mesh) {
    mesh.GetData().Update(STORAGE_VBO);
    host.frame.Add(mesh);
    host.frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer of a right-handed view
    const float radius = host.frame.GetRadius();
    host.view.SetProjectionR(0.8F, 0.01F * radius, 100.0F * radius); // radians, near and far plane
    host.view.SetModelviewViewer(host.frame.GetCenter() + Vector3f(1.0F, 0.7F, 2.0F) * (1.25F * radius),
                                 host.frame.GetCenter(), {0.0F, 1.0F, 0.0F});
    host.view.Render();
}

// False when OpenGL cannot be started.
bool Run(GLFWwindow* window, const char* path) {
    // The server has to know of the window before the library asks for it: the size is an answer from the server.
    glfwPollEvents();
    HWND handle = AttachX11Window(glfwGetX11Window(window), nullptr);
    if (handle == nullptr || !Quorvex::Init(handle)) {
        return false;
    }
    {
        Host host;
        host.frame.Init(handle, &host.view);
        glfwSetWindowUserPointer(window, &host);
        glfwGetCursorPos(window, &host.mouseX, &host.mouseY); // a mouse that has not moved yet is at a place, too
        glfwSetCursorPosCallback(window, MoveMouse);
        glfwSetScrollCallback(window, Zoom);
        glfwSetKeyCallback(window, PressKey);
        glfwSetFramebufferSizeCallback(window, Resize);
        glfwSetWindowCloseCallback(window, Close);
        Show(host, path != nullptr ? MeshReader::ReadSTLTolerant(path)
                                   : MeshBuilder::BuildBox({-1.0F, -0.6F, -0.8F}, {1.0F, 0.6F, 0.8F}));
        // GLFW does not say whether it delivered something; the library asks again soon in any case.
        SetMessagePump(
            [](void*) {
                glfwPollEvents();
                return false;
            },
            nullptr);
        while (glfwWindowShouldClose(window) == GLFW_FALSE) {
            ProcessEvents();
            glfwWaitEventsTimeout(WAIT);
        }
        SetMessagePump(nullptr, nullptr);
        host.frame.Clear();
    }
    Quorvex::Release();
    ReleaseWindow(handle);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (glfwInit() == GLFW_FALSE) {
        std::fputs("glfw: there is no display\n", stderr);
        return 1;
    }
    glfwWindowHint(GLFW_CLIENT_API, GLFW_NO_API); // the library makes the context
    GLFWwindow* const window = glfwCreateWindow(640, 480, "Quorvex", nullptr, nullptr);
    const bool done = window != nullptr && Run(window, argc > 1 ? argv[1] : nullptr);
    glfwTerminate();
    if (!done) {
        std::fputs("glfw: cannot draw to a window\n", stderr);
    }
    return done ? 0 : 1;
}
