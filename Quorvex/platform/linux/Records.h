#pragma once

#include <vector>

#include <Quorvex/platform/Handles.h>

// What is behind the handles on Linux.

namespace KOVA::Quorvex::platform {

enum class WindowKind { X11, Offscreen };

struct DeviceContextRecord {
    WindowRecord* window;
};

// Lives until the host has released the handle and nobody holds it any more: the library holds it while a device
// context is handed out and while its procedure runs, so that a procedure may release its own window.
struct WindowRecord {
    struct Shape {
        bool mapped;
        int width, height;
    };

    WindowKind kind;
    Shape shape;             // as it is, as far as we know
    Shape told;              // as the procedure knows it
    unsigned long xid = 0;   // X11: the host's window
    unsigned long child = 0; // X11: our window inside it, when the host's own cannot be drawn to
    bool gone = false;       // destroyed or released: drawing goes nowhere
    bool destroyed = false;  // X11: the procedure has yet to hear of it
    bool exposed = false;    // X11: likewise
    void* surface = nullptr; // EGLSurface, from SetPixelFormat on
    WNDPROC procedure;
    void* userData = nullptr;
    DeviceContextRecord deviceContext{this};
    int handles = 1; // given to the host and not released
    int holds = 0;   // of the library itself

    unsigned long Drawable() const { return child != 0 ? child : xid; }
};

// All records, in the order in which they were made.
std::vector<WindowRecord*>& WindowRecords();
WindowRecord* AddWindow(WindowKind kind, const WindowRecord::Shape& shape);

void HoldWindow(WindowRecord* window);
void UnholdWindow(WindowRecord* window);

// Calls the window's procedure. The window may be freed when this returns.
LRESULT Deliver(WindowRecord* window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
void DeliverSize(WindowRecord* window);

// Marks the window as gone, gives its surface back and tells its procedure, once. The window may be freed when this
// returns.
void DeliverDestruction(WindowRecord* window);

} // namespace KOVA::Quorvex::platform
