#pragma once

// The handle and message types of the interface. On Windows they are the system's own (64-bit programs), reachable in
// this namespace too, so that a host's source is the same everywhere. Elsewhere they carry the same names; the handles
// are opaque, and only the platform layer looks inside.

#if defined(_WIN32)

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace KOVA::Quorvex {

using ::DWORD;
using ::HDC;
using ::HGLRC;
using ::HWND;
using ::LPARAM;
using ::LRESULT;
using ::UINT;
using ::UINT_PTR;
using ::WNDPROC;
using ::WPARAM;

} // namespace KOVA::Quorvex

#else

#include <cstdint>

namespace KOVA::Quorvex {

namespace platform {
struct WindowRecord;
struct DeviceContextRecord;
struct ContextRecord;
} // namespace platform

using HWND = platform::WindowRecord*;       // a window of the host, or an off-screen window
using HDC = platform::DeviceContextRecord*; // what OpenGL draws to: one per window
using HGLRC = platform::ContextRecord*;     // an OpenGL rendering context

using UINT = unsigned int;
using DWORD = std::uint32_t;
using UINT_PTR = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);

// Messages that reach a window procedure. WM_SIZE carries the new client size in lParam, the width in the low and the
// height in the high 16 bits, and SIZE_RESTORED or SIZE_MINIMIZED in wParam. WM_DESTROY is the last message of a
// window: when it has been delivered, the window is gone.
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_TIMER = 0x0113; // only handed to timer callbacks
constexpr WPARAM SIZE_RESTORED = 0;
constexpr WPARAM SIZE_MINIMIZED = 1;

} // namespace KOVA::Quorvex

#endif
