#include "X11Host.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <thread>

#include <X11/Xutil.h>
#include <poll.h>

#include <Quorvex/platform/NativeWindow.h>

void PrintTo(const Color& color, std::ostream* stream) {
    *stream << "(" << color.red << ", " << color.green << ", " << color.blue << ")";
}

std::size_t Picture::Count(const Color& color) const {
    return static_cast<std::size_t>(std::count(pixels.begin(), pixels.end(), color));
}

std::size_t Picture::CountDifferent(const Picture& other) const {
    if (pixels.size() != other.pixels.size()) {
        throw std::logic_error("pictures of different sizes are compared");
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        count += static_cast<std::size_t>(pixels[i] != other.pixels[i]);
    }
    return count;
}

void Picture::Write(const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    file << "P6 " << width << " " << height << " 255\n";
    for (const Color& color : pixels) {
        file << static_cast<char>(color.red) << static_cast<char>(color.green) << static_cast<char>(color.blue);
    }
}

X11Host::X11Host() : m_display(XOpenDisplay(nullptr)) {
    if (m_display == nullptr) {
        throw std::runtime_error("no X server; run this program with with_xvfb.sh");
    }
}

X11Host::~X11Host() {
    XCloseDisplay(m_display);
}

Window X11Host::MakeWindow(int x, int y, int width, int height, Window parent) {
    return ShowWindow(XCreateSimpleWindow(m_display, parent != 0 ? parent : XDefaultRootWindow(m_display), x, y,
                                          static_cast<unsigned int>(width), static_cast<unsigned int>(height), 0, 0,
                                          BACKGROUND));
}

Window X11Host::MakeArgbWindow(int x, int y, int width, int height) {
    XVisualInfo visual;
    if (XMatchVisualInfo(m_display, XDefaultScreen(m_display), 32, TrueColor, &visual) == 0) {
        throw std::runtime_error("the X server has no visual of depth 32");
    }
    const Window root = XDefaultRootWindow(m_display);
    XSetWindowAttributes attributes{};
    attributes.colormap = XCreateColormap(m_display, root, visual.visual, AllocNone);
    attributes.background_pixel = BACKGROUND;
    return ShowWindow(XCreateWindow(m_display, root, x, y, static_cast<unsigned int>(width),
                                    static_cast<unsigned int>(height), 0, 32, InputOutput, visual.visual,
                                    CWColormap | CWBorderPixel | CWBackPixel, &attributes));
}

Window X11Host::ShowWindow(Window window) {
    XSelectInput(m_display, window, ExposureMask);
    XMapWindow(m_display, window);
    XEvent event;
    XWindowEvent(m_display, window, ExposureMask, &event);
    Sync();
    return window;
}

Picture X11Host::Read(Window window) {
    XWindowAttributes attributes;
    XGetWindowAttributes(m_display, window, &attributes);
    const Window root = XDefaultRootWindow(m_display);
    int x = 0;
    int y = 0;
    Window child = 0;
    XTranslateCoordinates(m_display, window, root, 0, 0, &x, &y, &child);
    XImage* image = XGetImage(m_display, root, x, y, static_cast<unsigned int>(attributes.width),
                              static_cast<unsigned int>(attributes.height), AllPlanes, ZPixmap);
    Picture picture{attributes.width, attributes.height, {}};
    for (int row = 0; row < attributes.height; ++row) {
        for (int column = 0; column < attributes.width; ++column) {
            const auto pixel = static_cast<unsigned int>(XGetPixel(image, column, row));
            picture.pixels.push_back({static_cast<int>(pixel >> 16 & 0xFF), static_cast<int>(pixel >> 8 & 0xFF),
                                      static_cast<int>(pixel & 0xFF)});
        }
    }
    XDestroyImage(image);
    return picture;
}

void X11Host::Resize(Window window, int width, int height) {
    XResizeWindow(m_display, window, static_cast<unsigned int>(width), static_cast<unsigned int>(height));
    Sync();
}

void X11Host::Destroy(Window window) {
    XDestroyWindow(m_display, window);
    Sync();
}

std::vector<Window> X11Host::Children(Window window) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    XQueryTree(m_display, window, &root, &parent, &children, &count);
    std::vector<Window> result(children, children + count);
    XFree(children);
    return result;
}

bool WaitForDescriptor(int milliseconds) {
    pollfd descriptor{KOVA::Quorvex::EventDescriptor(), POLLIN, 0};
    return poll(&descriptor, 1, milliseconds) == 1;
}

bool ProcessUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        WaitForDescriptor(20);
        KOVA::Quorvex::ProcessEvents();
    }
    return true;
}

void ProcessAll() {
    std::this_thread::sleep_for(std::chrono::milliseconds(30)); // what the server has done reaches us in a moment
    while (KOVA::Quorvex::ProcessEvents()) {
    }
}
