#include <Quorvex/platform/linux/Records.h>

#include <algorithm>

#include <Quorvex/platform/WindowSystem.h>
#include <Quorvex/platform/linux/EglSurfaces.h>
#include <Quorvex/platform/linux/X11Windows.h>

namespace KOVA::Quorvex::platform {

// Never destroyed: a host may have frames in static variables, which are released after the library's own.
std::vector<WindowRecord*>& WindowRecords() {
    static auto& records = *new std::vector<WindowRecord*>;
    return records;
}

WindowRecord* AddWindow(WindowKind kind, const WindowRecord::Shape& shape) {
    WindowRecords().push_back(
        new WindowRecord{.kind = kind, .shape = shape, .told = shape, .procedure = DefaultWindowProcedure});
    return WindowRecords().back();
}

void HoldWindow(WindowRecord* window) {
    ++window->holds;
}

void UnholdWindow(WindowRecord* window) {
    if (--window->holds > 0 || window->handles > 0) {
        return;
    }
    std::erase(WindowRecords(), window);
    ReplaceSurface(window, nullptr);
    delete window;
}

LRESULT Deliver(WindowRecord* window, UINT message, WPARAM wParam, LPARAM lParam) {
    HoldWindow(window);
    const LRESULT result = CallWindowProcedure(window->procedure, window, message, wParam, lParam);
    UnholdWindow(window);
    return result;
}

void DeliverSize(WindowRecord* window) {
    window->told = window->shape;
    if (!window->shape.mapped) {
        Deliver(window, WM_SIZE, SIZE_MINIMIZED, 0);
        return;
    }
    const LPARAM size = (window->shape.width & 0xFFFF) | (window->shape.height & 0xFFFF) << 16;
    Deliver(window, WM_SIZE, SIZE_RESTORED, size);
}

void DeliverDestruction(WindowRecord* window) {
    if (window->gone) {
        return;
    }
    window->gone = true;
    if (window->surface != nullptr) {
        ReplaceSurface(window, CreatePbuffer(1, 1));
    }
    if (window->kind == WindowKind::X11) {
        ForgetX11Window(window);
    }
    Deliver(window, WM_DESTROY);
}

} // namespace KOVA::Quorvex::platform
