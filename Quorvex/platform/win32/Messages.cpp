#include <Quorvex/platform/Messages.h>

#include <algorithm>
#include <vector>

#include <Quorvex/platform/HostCallbacks.h>
#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex {

namespace platform {

namespace {

// The numbers of our timers. Never destroyed: the system ticks as long as the thread has messages.
std::vector<UINT_PTR>& Timers() {
    static auto& timers = *new std::vector<UINT_PTR>;
    return timers;
}

bool IsTick(const MSG& message) {
    const auto& timers = Timers();
    return message.message == WM_TIMER && message.hwnd == nullptr &&
           std::find(timers.begin(), timers.end(), message.wParam) != timers.end();
}

// Looks at the next message without taking it.
bool Peek(MSG* message) {
    return PeekMessageA(message, nullptr, 0, 0, PM_NOREMOVE) != 0;
}

// Takes the next message and delivers it. One for a Unicode window is taken as Unicode, so that its characters arrive.
bool TakeAndDispatch(const MSG& next) {
    const bool unicode = next.hwnd != nullptr && IsWindowUnicode(next.hwnd) != 0;
    MSG message;
    const BOOL taken =
        unicode ? PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) : PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);
    if (taken == 0) {
        return false;
    }
    if (message.message == WM_QUIT) {
        // Meant for the host's own loop, which may be further up the stack.
        PostQuitMessage(static_cast<int>(message.wParam));
        return false;
    }
    TranslateMessage(&message);
    if (unicode) {
        DispatchMessageW(&message);
    } else {
        DispatchMessageA(&message);
    }
    return true;
}

bool DispatchThreadMessage() {
    MSG next;
    return Peek(&next) && TakeAndDispatch(next);
}

} // namespace

bool StartThreadTimer(unsigned int periodMilliseconds, TimerCallback callback) {
    const UINT_PTR timer = SetTimer(nullptr, 0, periodMilliseconds, callback);
    if (timer != 0) {
        Timers().push_back(timer);
    }
    return timer != 0;
}

// The queue and the host's callback in turn: whichever is always ready, the other one gets through. The turn moves on
// before the delivery, as that may come here again.
bool DispatchOneMessage() {
    static bool s_pumpFirst = false;
    const bool pumpFirst = s_pumpFirst;
    s_pumpFirst = !pumpFirst;
    return pumpFirst ? CallMessagePump() || DispatchThreadMessage() : DispatchThreadMessage() || CallMessagePump();
}

void ShowWarning(const char* caption, const char* text) {
    if (!CallWarningHandler(caption, text)) {
        MessageBoxA(nullptr, text, caption, MB_OK);
    }
}

double CounterFrequency() {
    LARGE_INTEGER frequency;
    return QueryPerformanceFrequency(&frequency) != 0 ? static_cast<double>(frequency.QuadPart) : 0.0;
}

std::int64_t CounterNow() {
    LARGE_INTEGER now;
    return QueryPerformanceCounter(&now) != 0 ? now.QuadPart : 0;
}

} // namespace platform

int EventDescriptor() {
    return -1;
}

// Drawing may take longer than the timer's period: a second tick ends it, so that the host gets its turn. Ticks come
// only when the queue is otherwise empty.
bool ProcessEvents() {
    using namespace platform;
    bool delivered = false;
    bool ticked = false;
    MSG next;
    while (Peek(&next)) {
        const bool tick = IsTick(next);
        if ((tick && ticked) || !TakeAndDispatch(next)) {
            break;
        }
        ticked = ticked || tick;
        delivered = true;
    }
    return delivered;
}

} // namespace KOVA::Quorvex
