#include <Quorvex/platform/linux/X11Connection.h>

#include <string>

#include <Quorvex/platform/linux/EventQueue.h>

namespace KOVA::Quorvex::platform {

namespace {

Display* s_display = nullptr;
XErrorHandler s_hostHandler = nullptr;

int FilterError(Display* display, XErrorEvent* error) {
    const bool own = display == s_display;
    return own || s_hostHandler == nullptr ? 0 : s_hostHandler(display, error);
}

// "host:1.0" and "host:1" are screens of one display.
std::string WithoutScreen(const std::string& name) {
    const std::size_t colon = name.rfind(':');
    const std::size_t dot = colon != std::string::npos ? name.find('.', colon) : std::string::npos;
    return name.substr(0, dot);
}

} // namespace

bool OpenX11Connection(const char* displayName) {
    if (s_display != nullptr) {
        return WithoutScreen(XDisplayName(displayName)) == WithoutScreen(XDisplayString(s_display));
    }
    s_display = XOpenDisplay(displayName);
    if (s_display != nullptr) {
        WatchDescriptor(XConnectionNumber(s_display));
    }
    return s_display != nullptr;
}

Display* X11Display() {
    return s_display;
}

X11Call::X11Call() {
    if (s_display == nullptr) {
        return;
    }
    m_hostHandler = XSetErrorHandler(FilterError);
    if (m_hostHandler != FilterError) { // not inside another call of ours
        s_hostHandler = m_hostHandler;
    }
}

X11Call::~X11Call() {
    if (m_hostHandler == nullptr) {
        return;
    }
    if (XEventsQueued(s_display, QueuedAfterReading) > 0) {
        WakeHost(true);
    }
    XSetErrorHandler(m_hostHandler);
}

} // namespace KOVA::Quorvex::platform
