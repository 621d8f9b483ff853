#include "X11Window.h"

#include <QGuiApplication>

#include <Quorvex/platform/NativeWindow.h>

// After Qt: its macros take names from everyone.
#include <X11/Xlib.h>

namespace KOVA::Quorvex::viewer {

void SyncWithServer() {
    if (const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        XSync(x11->display(), False);
    }
}

HWND Attach(WId window) {
    SyncWithServer();
    return AttachX11Window(static_cast<unsigned long>(window), nullptr);
}

} // namespace KOVA::Quorvex::viewer
