#pragma once

#include <Quorvex/platform/Handles.h>

namespace KOVA::Quorvex::platform {

// Makes a window of that client size that is never shown; null on failure. Destroyed with DestroyWindow on this thread.
HWND CreateHiddenWindow(int width, int height);

// True for a window that CreateHiddenWindow made and that still exists.
bool IsHiddenWindow(HWND window);

} // namespace KOVA::Quorvex::platform
