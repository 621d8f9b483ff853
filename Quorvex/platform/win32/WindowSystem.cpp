#include <Quorvex/platform/WindowSystem.h>

#include <deque>

namespace KOVA::Quorvex::platform {

namespace {

// The paints under way on this thread, the innermost last: a paint may dispatch messages and so start another one.
std::deque<PAINTSTRUCT>& Paints() {
    static auto& paints = *new std::deque<PAINTSTRUCT>;
    return paints;
}

HPEN ProgressPen(bool black) {
    constexpr COLORREF blackColor = RGB(0, 0, 0);
    constexpr COLORREF whiteColor = RGB(255, 255, 255);
    static const HPEN s_black = CreatePen(PS_SOLID, 1, blackColor);
    static const HPEN s_white = CreatePen(PS_SOLID, 1, whiteColor);
    return black ? s_black : s_white;
}

} // namespace

HDC AcquireDeviceContext(HWND window) {
    return window != nullptr ? GetDC(window) : nullptr; // of null it would be the whole screen's
}

void ReleaseDeviceContext(HWND window, HDC deviceContext) {
    if (window != nullptr && deviceContext != nullptr) {
        ReleaseDC(window, deviceContext);
    }
}

HWND WindowOf(HDC deviceContext) {
    return WindowFromDC(deviceContext);
}

bool GetClientSize(HWND window, unsigned int* width, unsigned int* height) {
    RECT client;
    if (window == nullptr || GetClientRect(window, &client) == 0) {
        return false;
    }
    *width = static_cast<unsigned int>(client.right);
    *height = static_cast<unsigned int>(client.bottom);
    return true;
}

HWND FocusWindow() {
    return GetFocus();
}

// A window takes its characters either in the code page or as Unicode. It is subclassed and called in its own way, so
// that none is lost on the way through our procedure.
WNDPROC GetWindowProcedure(HWND window) {
    if (window == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window) != 0 ? GetWindowLongPtrW(window, GWLP_WNDPROC)
                                                                  : GetWindowLongPtrA(window, GWLP_WNDPROC));
}

void SetWindowProcedure(HWND window, WNDPROC procedure) {
    if (window == nullptr) {
        return;
    }
    const bool unicode = IsWindowUnicode(window) != 0;
    const WNDPROC fallback = unicode ? DefWindowProcW : DefWindowProcA;
    const auto value = reinterpret_cast<LONG_PTR>(procedure != nullptr ? procedure : fallback);
    if (unicode) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, value);
    } else {
        SetWindowLongPtrA(window, GWLP_WNDPROC, value);
    }
}

void* GetWindowUserData(HWND window) {
    return window != nullptr ? reinterpret_cast<void*>(GetWindowLongPtrA(window, GWLP_USERDATA)) : nullptr;
}

void SetWindowUserData(HWND window, void* data) {
    if (window != nullptr) {
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(data));
    }
}

LRESULT CallWindowProcedure(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (procedure == nullptr) {
        return 0;
    }
    return IsWindowUnicode(window) != 0 ? CallWindowProcW(procedure, window, message, wParam, lParam)
                                        : CallWindowProcA(procedure, window, message, wParam, lParam);
}

LRESULT DefaultWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return IsWindowUnicode(window) != 0 ? DefWindowProcW(window, message, wParam, lParam)
                                        : DefWindowProcA(window, message, wParam, lParam);
}

void BeginWindowPaint(HWND window) {
    Paints().emplace_back();
    ::BeginPaint(window, &Paints().back());
}

void EndWindowPaint(HWND window) {
    ::EndPaint(window, &Paints().back());
    Paints().pop_back();
}

void DrawProgressLine(HDC deviceContext, int endX, int y, bool black) {
    if (deviceContext == nullptr) {
        return;
    }
    const HGDIOBJ previous = SelectObject(deviceContext, ProgressPen(black));
    MoveToEx(deviceContext, 0, y, nullptr);
    LineTo(deviceContext, endX, y);
    SelectObject(deviceContext, previous);
}

} // namespace KOVA::Quorvex::platform
