#pragma once

namespace KOVA::Quorvex::viewer {

// The key F7, pressed from outside: through a connection of its own to the X server, which tells the viewer like of any
// other key. Xlib's macros, which take names from everyone, stay with the implementation.
class XKeyboard {
public:
    XKeyboard();
    XKeyboard(const XKeyboard&) = delete;
    XKeyboard& operator=(const XKeyboard&) = delete;
    ~XKeyboard();

    void PressF7(); // returns when the server has it

private:
    void* m_display;
};

} // namespace KOVA::Quorvex::viewer
