#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <X11/Xlib.h>

#include <Quorvex/platform/Handles.h>

// What a host application brings along: a connection of its own with windows, and an event loop. Every test is a
// process with an X server of its own (see with_xvfb.sh).

struct Color {
    int red, green, blue;
    bool operator==(const Color&) const = default;
    friend void PrintTo(const Color& color, std::ostream* stream);
};

constexpr Color RED{255, 0, 0};
constexpr Color GREEN{0, 255, 0};

struct Picture {
    int width, height;
    std::vector<Color> pixels; // from the top left, row by row

    const Color& At(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
    std::size_t Count(const Color& color) const;
    std::size_t CountDifferent(const Picture& other) const;
    void Write(const std::string& path) const; // as a PPM file
};

class X11Host {
public:
    static constexpr unsigned long BACKGROUND = 0x804020; // of all windows of the host
    static constexpr Color BACKGROUND_COLOR{0x80, 0x40, 0x20};

    X11Host();
    ~X11Host();
    X11Host(const X11Host&) = delete;
    X11Host& operator=(const X11Host&) = delete;

    Display* Connection() const { return m_display; }

    // Shown and exposed when this returns. A null parent is the screen.
    Window MakeWindow(int x, int y, int width, int height, Window parent = 0);
    Window MakeArgbWindow(int x, int y, int width, int height);

    // What the screen shows where the window is, its children included.
    Picture Read(Window window);

    // Waits until the server has done all that the host has asked for.
    void Sync() { XSync(m_display, False); }
    void Resize(Window window, int width, int height);
    void Destroy(Window window);
    std::vector<Window> Children(Window window);

private:
    Window ShowWindow(Window window);

    Display* m_display;
};

// The host's event loop, with nothing but the library in it: waits for its descriptor and lets it work until the
// condition holds. False after five seconds.
bool ProcessUntil(const std::function<bool()>& condition);

// Lets the library work off all that the host has caused so far (see Sync).
void ProcessAll();

// True when the library's descriptor becomes readable within that time.
bool WaitForDescriptor(int milliseconds);
