#include <Quorvex/platform/NativeWindow.h>

#include <Quorvex/platform/linux/EglSurfaces.h>
#include <Quorvex/platform/linux/Records.h>

// Off-screen windows, and the end of all windows; X11Windows.cpp has the beginning of the host's.

namespace KOVA::Quorvex {

namespace {

constexpr int MAX_OFFSCREEN_SIZE = 4096;

bool IsOffscreenSize(int width, int height) {
    return width >= 1 && width <= MAX_OFFSCREEN_SIZE && height >= 1 && height <= MAX_OFFSCREEN_SIZE;
}

} // namespace

HWND CreateOffscreenWindow(int width, int height) {
    using namespace platform;
    return IsOffscreenSize(width, height) ? AddWindow(WindowKind::Offscreen, {true, width, height}) : nullptr;
}

bool ResizeOffscreenWindow(HWND window, int width, int height) {
    using namespace platform;
    if (window == nullptr || window->kind != WindowKind::Offscreen || window->gone || !IsOffscreenSize(width, height)) {
        return false;
    }
    if (width == window->shape.width && height == window->shape.height) {
        return true;
    }
    if (window->surface != nullptr) {
        void* surface = CreatePbuffer(width, height);
        if (surface == nullptr) {
            return false;
        }
        ReplaceSurface(window, surface);
    }
    window->shape = {true, width, height};
    DeliverSize(window);
    return true;
}

void ReleaseWindow(HWND window) {
    using namespace platform;
    if (window == nullptr || window->handles == 0) {
        return;
    }
    HoldWindow(window);
    if (--window->handles == 0) {
        DeliverDestruction(window);
    }
    UnholdWindow(window);
}

} // namespace KOVA::Quorvex
