#pragma once

#include <X11/Xlib.h>

namespace KOVA::Quorvex::platform {

// Opens the library's own connection to the X server (null: the one that DISPLAY names). There is one for the process
// and none before the first call; true when that is a connection to this display.
bool OpenX11Connection(const char* displayName);

// Null when there is none.
Display* X11Display();

// Stands around everything that talks to the X server, calls of EGL included. Does nothing without a connection. No
// callbacks of the host inside.
//
// X has one error handler for the process, which ends it by default. Outside our calls the host's is in force, whatever
// it sets and when; inside, errors of our own connection are swallowed, as a window of the host may vanish at any time,
// and those of other connections are handed on.
//
// A call that waits for a reply may bring events along, for which the connection's descriptor then wakes nobody any
// more: when there are any, the library's event descriptor is made readable at the end.
class X11Call {
public:
    X11Call();
    ~X11Call();
    X11Call(const X11Call&) = delete;
    X11Call& operator=(const X11Call&) = delete;

private:
    XErrorHandler m_hostHandler = nullptr;
};

} // namespace KOVA::Quorvex::platform
