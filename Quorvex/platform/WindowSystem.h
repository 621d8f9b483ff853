#pragma once

#include <Quorvex/platform/Handles.h>

// Seam: windows and their procedures. All functions are called on the thread of Quorvex::Init; a null handle is
// answered with null, false or nothing.

namespace KOVA::Quorvex::platform {

// The device context of a window; every call is balanced by a ReleaseDeviceContext.
HDC AcquireDeviceContext(HWND window);
void ReleaseDeviceContext(HWND window, HDC deviceContext);
HWND WindowOf(HDC deviceContext);

// Size of the client area in pixels. False, and both untouched, when the window is gone.
bool GetClientSize(HWND window, unsigned int* width, unsigned int* height);

// The window of this thread that has the keyboard focus. Where only the library's windows are known, the one of them
// that has it, itself or through a window above or below it. Null when none has.
HWND FocusWindow();

// Every window has a replaceable procedure and a user pointer. The procedure of a window that nobody has subclassed is
// DefaultWindowProcedure.
WNDPROC GetWindowProcedure(HWND window);
void SetWindowProcedure(HWND window, WNDPROC procedure);
void* GetWindowUserData(HWND window);
void SetWindowUserData(HWND window, void* data);
LRESULT CallWindowProcedure(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT DefaultWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Bracket the answer to WM_PAINT.
void BeginWindowPaint(HWND window);
void EndWindowPaint(HWND window);

// Draws a line one pixel wide straight onto the visible window from (0, y) to (endX, y), y counted from the top, in
// black or white. It lasts until the next swap.
void DrawProgressLine(HDC deviceContext, int endX, int y, bool black);

} // namespace KOVA::Quorvex::platform
