#include <Quorvex/platform/linux/X11Windows.h>

#include <algorithm>

#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/linux/X11Connection.h>

namespace KOVA::Quorvex {

namespace platform {

namespace {

constexpr long WINDOW_EVENTS = ExposureMask | StructureNotifyMask;

// OpenGL draws to windows of one visual only, the screen's default. A window of another one (transparent ones, mostly)
// gets a child that covers it: clicks and keys pass through to the host's window, as the child selects none.
Window CreateChild(Display* display, Window parent, const XWindowAttributes& parentAttributes) {
    XSetWindowAttributes attributes{};
    attributes.border_pixel = 0; // has to be given when the visual is not the parent's
    attributes.colormap = XDefaultColormapOfScreen(parentAttributes.screen);
    attributes.event_mask = ExposureMask | StructureNotifyMask;
    const Window child = XCreateWindow(display, parent, 0, 0, static_cast<unsigned int>(parentAttributes.width),
                                       static_cast<unsigned int>(parentAttributes.height), 0,
                                       XDefaultDepthOfScreen(parentAttributes.screen), InputOutput,
                                       XDefaultVisualOfScreen(parentAttributes.screen),
                                       CWBorderPixel | CWColormap | CWEventMask, &attributes);
    XLowerWindow(display, child); // the host's own children stay in front, as they do without it
    XMapWindow(display, child);
    return child;
}

} // namespace

WindowRecord* FindX11Window(unsigned long xid) {
    const auto& records = WindowRecords();
    const auto found = std::find_if(records.begin(), records.end(), [xid](const WindowRecord* record) {
        return record->kind == WindowKind::X11 && !record->gone && (record->xid == xid || record->child == xid);
    });
    return found != records.end() ? *found : nullptr;
}

namespace {

void NoteShape(WindowRecord* record, const XConfigureEvent& event) {
    if (event.window != record->xid) {
        return;
    }
    record->shape.width = event.width;
    record->shape.height = event.height;
    if (record->child != 0) {
        XResizeWindow(event.display, record->child, static_cast<unsigned int>(event.width),
                      static_cast<unsigned int>(event.height));
    }
}

void NoteEvent(const XEvent& event) {
    WindowRecord* record = FindX11Window(event.xany.window);
    if (record == nullptr) {
        return;
    }
    switch (event.type) {
    case Expose:
        record->exposed = record->exposed || event.xexpose.count == 0;
        break;
    case ConfigureNotify:
        NoteShape(record, event.xconfigure);
        break;
    case MapNotify:
    case UnmapNotify:
        if (event.xany.window == record->xid) {
            record->shape.mapped = event.type == MapNotify;
        }
        break;
    case DestroyNotify:
        record->destroyed = true;
        break;
    default:
        break;
    }
}

bool SizeWaits(const WindowRecord* record) {
    const WindowRecord::Shape& shape = record->shape;
    const WindowRecord::Shape& told = record->told;
    const bool resized = shape.width != told.width || shape.height != told.height;
    return shape.mapped != told.mapped || (shape.mapped && resized);
}

bool MessageWaits(const WindowRecord* record) {
    return record->kind == WindowKind::X11 && !record->gone &&
           (record->destroyed || record->exposed || SizeWaits(record));
}

void DeliverNoted(WindowRecord* record) {
    if (record->destroyed) {
        DeliverDestruction(record);
    } else if (SizeWaits(record)) {
        DeliverSize(record);
    } else {
        record->exposed = false;
        Deliver(record, WM_PAINT);
    }
}

} // namespace

void NoteX11Events() {
    Display* display = X11Display();
    if (display == nullptr) {
        return;
    }
    const X11Call call;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        NoteEvent(event);
    }
    XFlush(display);
}

bool X11MessagesWait() {
    return std::any_of(WindowRecords().begin(), WindowRecords().end(), MessageWaits);
}

// One window after the other, so that none is starved by another one's endless stream.
bool DeliverX11Message() {
    static std::size_t s_next = 0;
    const auto& records = WindowRecords();
    for (std::size_t i = 0; i < records.size(); ++i) {
        WindowRecord* record = records[(s_next + i) % records.size()];
        if (MessageWaits(record)) {
            s_next = (s_next + i + 1) % records.size();
            DeliverNoted(record);
            return true;
        }
    }
    return false;
}

void ForgetX11Window(WindowRecord* window) {
    const X11Call call;
    Display* display = X11Display();
    if (window->child != 0) {
        XDestroyWindow(display, window->child);
    }
    if (!window->destroyed) { // else the number may already be another window's
        XSelectInput(display, window->xid, NoEventMask);
    }
    XFlush(display);
}

bool GetX11WindowSize(const WindowRecord* window, unsigned int* width, unsigned int* height) {
    const X11Call call;
    XWindowAttributes attributes;
    if (XGetWindowAttributes(X11Display(), window->xid, &attributes) == 0) {
        return false;
    }
    *width = static_cast<unsigned int>(attributes.width);
    *height = static_cast<unsigned int>(attributes.height);
    return true;
}

void DrawX11Line(const WindowRecord* window, int endX, int y, bool black) {
    const X11Call call;
    Display* display = X11Display();
    const int screen = XDefaultScreen(display);
    GC context = XDefaultGC(display, screen);
    XSetForeground(display, context, black ? XBlackPixel(display, screen) : XWhitePixel(display, screen));
    XDrawLine(display, window->Drawable(), context, 0, y, endX, y);
    XFlush(display);
}

} // namespace platform

HWND AttachX11Window(unsigned long xid, const char* displayName) {
    using namespace platform;
    if (xid == 0 || !OpenX11Connection(displayName)) {
        return nullptr;
    }
    const X11Call call;
    Display* display = X11Display();
    // Selecting first and asking afterwards: a window that answers cannot vanish unnoticed any more.
    XWindowAttributes attributes;
    XSelectInput(display, xid, WINDOW_EVENTS);
    if (XGetWindowAttributes(display, xid, &attributes) == 0) {
        return nullptr;
    }
    if (WindowRecord* record = FindX11Window(xid)) {
        ++record->handles;
        return record;
    }
    if (attributes.c_class != InputOutput || attributes.screen != XDefaultScreenOfDisplay(display)) {
        XSelectInput(display, xid, NoEventMask);
        XFlush(display);
        return nullptr;
    }
    WindowRecord* record = AddWindow(
        WindowKind::X11,
        {.mapped = attributes.map_state != IsUnmapped, .width = attributes.width, .height = attributes.height});
    record->xid = xid;
    if (attributes.visual != XDefaultVisualOfScreen(attributes.screen)) {
        record->child = CreateChild(display, xid, attributes);
        XSync(display, False); // EGL is about to ask for it on the same connection
    }
    return record;
}

} // namespace KOVA::Quorvex
