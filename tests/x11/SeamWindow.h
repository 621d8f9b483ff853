#pragma once

#include <functional>
#include <vector>

#include "X11Host.h"
#include <Quorvex/platform/Handles.h>

// A window of the host, attached and subclassed, that notes what its procedure is told and can be filled with a colour.
class SeamWindow {
public:
    using HWND = KOVA::Quorvex::HWND;

    struct Message {
        KOVA::Quorvex::UINT message;
        KOVA::Quorvex::WPARAM wParam;
        int width, height; // of WM_SIZE

        bool operator==(const Message&) const = default;
        friend void PrintTo(const Message& message, std::ostream* stream);
    };

    explicit SeamWindow(Window xid);
    ~SeamWindow();
    SeamWindow(const SeamWindow&) = delete;
    SeamWindow& operator=(const SeamWindow&) = delete;

    // Draws with the one context that all windows share, made for the first of them.
    bool Fill(const Color& color);
    bool MakeCurrent();
    void Release();

    HWND Handle() const { return m_window; }
    KOVA::Quorvex::HDC DeviceContext() const { return m_deviceContext; }

    std::vector<Message> messages;
    std::function<void(KOVA::Quorvex::UINT)> onMessage;

private:
    static KOVA::Quorvex::LRESULT Procedure(KOVA::Quorvex::HWND window, KOVA::Quorvex::UINT message,
                                            KOVA::Quorvex::WPARAM wParam, KOVA::Quorvex::LPARAM lParam);

    HWND m_window;
    KOVA::Quorvex::HDC m_deviceContext;
};
