#pragma once

#include <QWindow>

#include <Quorvex/platform/Handles.h>

namespace KOVA::Quorvex::viewer {

// The library has a connection of its own to the X server. What Qt asked for on its own (windows, sizes) is done when
// this returns.
void SyncWithServer();

// The window's handle for the library. Null when it cannot be drawn to.
HWND Attach(WId window);

} // namespace KOVA::Quorvex::viewer
