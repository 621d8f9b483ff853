#include <Quorvex/platform/WindowSystem.h>

#include <Quorvex/platform/linux/X11Windows.h>

namespace KOVA::Quorvex::platform {

// A window has one device context, part of its record; an open one keeps the record.
HDC AcquireDeviceContext(HWND window) {
    if (window == nullptr || window->gone) {
        return nullptr;
    }
    HoldWindow(window);
    return &window->deviceContext;
}

void ReleaseDeviceContext(HWND window, HDC deviceContext) {
    if (window != nullptr && deviceContext == &window->deviceContext) {
        UnholdWindow(window);
    }
}

HWND WindowOf(HDC deviceContext) {
    return deviceContext != nullptr ? deviceContext->window : nullptr;
}

bool GetClientSize(HWND window, unsigned int* width, unsigned int* height) {
    if (window == nullptr || window->gone) {
        return false;
    }
    if (window->kind == WindowKind::X11) {
        return GetX11WindowSize(window, width, height);
    }
    *width = static_cast<unsigned int>(window->shape.width);
    *height = static_cast<unsigned int>(window->shape.height);
    return true;
}

HWND FocusWindow() {
    return FocusedX11Window();
}

WNDPROC GetWindowProcedure(HWND window) {
    return window != nullptr ? window->procedure : nullptr;
}

void SetWindowProcedure(HWND window, WNDPROC procedure) {
    if (window != nullptr) {
        window->procedure = procedure != nullptr ? procedure : DefaultWindowProcedure;
    }
}

void* GetWindowUserData(HWND window) {
    return window != nullptr ? window->userData : nullptr;
}

void SetWindowUserData(HWND window, void* data) {
    if (window != nullptr) {
        window->userData = data;
    }
}

LRESULT CallWindowProcedure(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return procedure != nullptr ? procedure(window, message, wParam, lParam) : 0;
}

LRESULT DefaultWindowProcedure(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return 0;
}

// What was exposed until now is what the paint draws.
void BeginWindowPaint(HWND window) {
    if (window != nullptr) {
        window->exposed = false;
    }
}

void EndWindowPaint(HWND /*window*/) {}

void DrawProgressLine(HDC deviceContext, int endX, int y, bool black) {
    if (deviceContext == nullptr || deviceContext->window->gone || deviceContext->window->kind != WindowKind::X11) {
        return;
    }
    DrawX11Line(deviceContext->window, endX, y, black);
}

} // namespace KOVA::Quorvex::platform
