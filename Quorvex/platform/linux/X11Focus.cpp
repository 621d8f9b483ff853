#include <algorithm>

#include <Quorvex/platform/linux/X11Connection.h>
#include <Quorvex/platform/linux/X11Windows.h>

namespace KOVA::Quorvex::platform {

namespace {

// 0 above the root window, and when the window does not exist.
Window ParentOf(Window window) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(X11Display(), window, &root, &parent, &children, &count) == 0) {
        return 0;
    }
    if (children != nullptr) {
        XFree(children);
    }
    return parent != root ? parent : 0;
}

// Toolkits give the focus to a tiny invisible child of the window that is meant.
Window WithoutProxy(Window window) {
    Window root = 0;
    int x = 0;
    int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int border = 0;
    unsigned int depth = 0;
    const bool known = XGetGeometry(X11Display(), window, &root, &x, &y, &width, &height, &border, &depth) != 0;
    const Window parent = known && width <= 1 && height <= 1 ? ParentOf(window) : 0;
    return parent != 0 ? parent : window;
}

bool IsBelow(Window window, Window above) {
    while (window != 0 && window != above) {
        window = ParentOf(window);
    }
    return window == above;
}

} // namespace

WindowRecord* FocusedX11Window() {
    if (X11Display() == nullptr) {
        return nullptr;
    }
    const X11Call call;
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(X11Display(), &focus, &revert);
    if (focus == None || focus == PointerRoot || focus == XDefaultRootWindow(X11Display())) {
        return nullptr;
    }
    for (Window window = focus; window != 0; window = ParentOf(window)) {
        if (WindowRecord* record = FindX11Window(window)) {
            return record;
        }
    }
    focus = WithoutProxy(focus);
    const auto& records = WindowRecords();
    const auto found = std::find_if(records.begin(), records.end(), [focus](const WindowRecord* record) {
        return record->kind == WindowKind::X11 && !record->gone && IsBelow(record->xid, focus);
    });
    return found != records.end() ? *found : nullptr;
}

} // namespace KOVA::Quorvex::platform
