#include <Quorvex/platform/linux/EglSurfaces.h>

#include <Quorvex/platform/linux/EglDisplay.h>
#include <Quorvex/platform/linux/X11Connection.h>

namespace KOVA::Quorvex::platform {

void* CreateWindowSurface(unsigned long xid) {
    const X11Call call;
    const EglDisplay* egl = CurrentEglDisplay();
    return egl != nullptr ? eglCreateWindowSurface(egl->display, egl->config, xid, nullptr) : nullptr;
}

void* CreatePbuffer(int width, int height) {
    const X11Call call;
    const EglDisplay* egl = CurrentEglDisplay();
    const EGLint attributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    return egl != nullptr ? eglCreatePbufferSurface(egl->display, egl->config, attributes) : nullptr;
}

void ReplaceSurface(WindowRecord* window, void* surface) {
    void* old = window->surface;
    window->surface = surface;
    if (old == nullptr) {
        return;
    }
    const X11Call call;
    const DesktopGlScope scope;
    const EGLDisplay display = CurrentEglDisplay()->display;
    if (eglGetCurrentSurface(EGL_DRAW) == old) {
        const EGLContext context = surface != nullptr ? eglGetCurrentContext() : EGL_NO_CONTEXT;
        eglMakeCurrent(display, surface, surface, context);
    }
    eglDestroySurface(display, old);
}

} // namespace KOVA::Quorvex::platform
