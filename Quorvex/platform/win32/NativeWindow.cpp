#include <Quorvex/platform/NativeWindow.h>

#include <Quorvex/platform/win32/HiddenWindows.h>

namespace KOVA::Quorvex {

namespace {

constexpr int MAX_OFFSCREEN_SIZE = 4096;

// A driver may keep the buffers of the old size until they are swapped.
void RefreshBuffers(HWND window) {
    const HDC current = wglGetCurrentDC();
    if (current != nullptr && WindowFromDC(current) == window) {
        SwapBuffers(current);
    }
}

bool IsOffscreenSize(int width, int height) {
    return width >= 1 && width <= MAX_OFFSCREEN_SIZE && height >= 1 && height <= MAX_OFFSCREEN_SIZE;
}

} // namespace

HWND CreateOffscreenWindow(int width, int height) {
    return IsOffscreenSize(width, height) ? platform::CreateHiddenWindow(width, height) : nullptr;
}

// The system delivers WM_SIZE, and only when the size is another one.
bool ResizeOffscreenWindow(HWND window, int width, int height) {
    constexpr UINT sizeOnly = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    if (!platform::IsHiddenWindow(window) || !IsOffscreenSize(width, height) ||
        SetWindowPos(window, nullptr, 0, 0, width, height, sizeOnly) == 0) {
        return false;
    }
    RefreshBuffers(window);
    return true;
}

void ReleaseWindow(HWND window) {
    if (platform::IsHiddenWindow(window)) {
        DestroyWindow(window);
    }
}

} // namespace KOVA::Quorvex
