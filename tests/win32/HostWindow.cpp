#include "HostWindow.h"

#include <algorithm>

namespace KOVA::Quorvex::test {

namespace {

std::vector<Message> s_messages;

LRESULT CALLBACK NoteA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    s_messages.push_back({message, wParam, lParam});
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK NoteW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    s_messages.push_back({message, wParam, lParam});
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND Create(int width, int height) {
    WNDCLASSA description{};
    description.lpfnWndProc = NoteA;
    description.lpszClassName = "QuorvexTestHost";
    RegisterClassA(&description);
    return CreateWindowExA(0, "QuorvexTestHost", "host", WS_POPUP, 0, 0, width, height, nullptr, nullptr, nullptr,
                           nullptr);
}

HWND CreateUnicode(int width, int height) {
    WNDCLASSW description{};
    description.lpfnWndProc = NoteW;
    description.lpszClassName = L"QuorvexTestUnicodeHost";
    RegisterClassW(&description);
    return CreateWindowExW(0, L"QuorvexTestUnicodeHost", L"host", WS_POPUP, 0, 0, width, height, nullptr, nullptr,
                           nullptr, nullptr);
}

} // namespace

HostWindow::HostWindow(int width, int height, bool unicode)
    : m_window(unicode ? CreateUnicode(width, height) : Create(width, height)) {
    EXPECT_NE(m_window, nullptr);
    Forget();
}

HostWindow::~HostWindow() {
    Destroy();
}

void HostWindow::Show() const {
    ShowWindow(m_window, SW_SHOWNA);
    UpdateWindow(m_window);
}

void HostWindow::Destroy() {
    if (m_window != nullptr) {
        DestroyWindow(m_window);
    }
    m_window = nullptr;
}

int HostWindow::CountOf(UINT message) {
    return static_cast<int>(std::count_if(s_messages.begin(), s_messages.end(),
                                          [message](const Message& m) { return m.message == message; }));
}

const Message* HostWindow::LastOf(UINT message) {
    const auto found = std::find_if(s_messages.rbegin(), s_messages.rend(),
                                    [message](const Message& m) { return m.message == message; });
    return found != s_messages.rend() ? &*found : nullptr;
}

void HostWindow::Forget() {
    s_messages.clear();
}

WNDPROC HostWindow::Procedure(bool unicode) {
    return unicode ? NoteW : NoteA;
}

void Tick() {
    MSG message{};
    message.message = WM_TIMER;
    message.wParam = 1;
    message.lParam = reinterpret_cast<LPARAM>(&Library::TimerProc);
    DispatchMessageA(&message);
}

} // namespace KOVA::Quorvex::test
