#pragma once

#define EGL_NO_X11
#include <EGL/egl.h>

#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/linux/Records.h>

// The one EGL display of the process. Contexts and surfaces work together only when they have the same configuration,
// so there is one of those, too.

namespace KOVA::Quorvex::platform {

struct EglDisplay {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    bool x11 = false; // can draw to windows
};

// Null until OpenEglDisplay succeeded.
const EglDisplay* CurrentEglDisplay();

// Opens the display for a first window of that kind; a display that is open stays what it is. Null when there is no
// display, or none that suits this kind of window and this format.
const EglDisplay* OpenEglDisplay(WindowKind kind, const PixelFormat& format);

// While it lives the thread's EGL calls mean desktop OpenGL; the host may use EGL for something else.
class DesktopGlScope {
public:
    DesktopGlScope() : m_previous(eglQueryAPI()) { eglBindAPI(EGL_OPENGL_API); }
    ~DesktopGlScope() { eglBindAPI(m_previous); }
    DesktopGlScope(const DesktopGlScope&) = delete;
    DesktopGlScope& operator=(const DesktopGlScope&) = delete;

private:
    EGLenum m_previous;
};

} // namespace KOVA::Quorvex::platform
