#include "XKeyboard.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace KOVA::Quorvex::viewer {

XKeyboard::XKeyboard() : m_display(XOpenDisplay(nullptr)) {}

XKeyboard::~XKeyboard() {
    XCloseDisplay(static_cast<Display*>(m_display));
}

void XKeyboard::PressF7() {
    auto* const display = static_cast<Display*>(m_display);
    const KeyCode key = XKeysymToKeycode(display, XK_F7);
    XTestFakeKeyEvent(display, key, True, CurrentTime);
    XTestFakeKeyEvent(display, key, False, CurrentTime);
    XSync(display, False);
}

} // namespace KOVA::Quorvex::viewer
