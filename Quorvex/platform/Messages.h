#pragma once

#include <cstdint>

#include <Quorvex/platform/Handles.h>

// Seam: the message queue of the thread that called Quorvex::Init.

namespace KOVA::Quorvex::platform {

// Starts a timer without a window that calls the callback on this thread, whenever messages are dispatched and the
// period has passed; ticks that were missed are not made up for. It runs until the process ends. False on failure.
using TimerCallback = void (*)(HWND, UINT, UINT_PTR, DWORD);
bool StartThreadTimer(unsigned int periodMilliseconds, TimerCallback callback);

// Takes one waiting message (window event, timer tick, event of the host) and delivers it; false when none waits.
bool DispatchOneMessage();

// Shows a warning to the user; texts are UTF-8.
void ShowWarning(const char* caption, const char* text);

// The high-resolution counter: its ticks per second (0 when there is none) and its value now.
double CounterFrequency();
std::int64_t CounterNow();

} // namespace KOVA::Quorvex::platform
