#pragma once

#include <vector>

#include <GlTest.h>

namespace KOVA::Quorvex::test {

// What a window procedure was called with.
struct Message {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// A host's own window, as hosts make them: overlapped, visible or not, with a procedure that notes what reaches it.
class HostWindow {
public:
    HostWindow(int width, int height, bool unicode = false);
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow();

    HWND Handle() const { return m_window; }
    void Show() const;
    void Destroy();
    static int CountOf(UINT message);           // since the last Forget
    static const Message* LastOf(UINT message); // null when there was none
    static void Forget();
    static WNDPROC Procedure(bool unicode = false);

private:
    HWND m_window;
};

// Delivers what waits, ticks of the library's timer included, until the condition holds; false after some seconds.
template <class Condition> bool PumpUntil(Condition condition) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        if (GetTickCount() - start > 20000) {
            return false;
        }
        Sleep(1);
    }
    return true;
}

// One tick of the library's scheduler, through the system: what its timer puts into the queue, without the waiting.
void Tick();

} // namespace KOVA::Quorvex::test
