#include <Quorvex/platform/Gl.h>

#include <vector>

#include <dlfcn.h>

#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/linux/EglDisplay.h>
#include <Quorvex/platform/linux/EglSurfaces.h>
#include <Quorvex/platform/linux/X11Connection.h>

namespace KOVA::Quorvex {

namespace platform {

// Stays when its context is deleted, so that a handle that somebody kept is refused and never taken for another one.
struct ContextRecord {
    EGLContext context;
};

namespace {

// Once only: the scheduler would repeat it with every tick.
void WarnOfForeignContext() {
    static bool s_warned = false;
    if (!s_warned) {
        s_warned = true;
        ShowWarning("Quorvex", "Nothing can be drawn: an OpenGL context of another library (GLX) is current on this "
                               "thread. Release it before the library is called and before its events are processed, "
                               "with glXMakeCurrent(display, None, NULL) or the toolkit's doneCurrent(), or let the "
                               "toolkit use EGL.");
    }
}

EGLint Bind(EGLSurface surface, EGLContext context) {
    const EGLDisplay display = CurrentEglDisplay()->display;
    const DesktopGlScope scope;
    return eglMakeCurrent(display, surface, surface, context) == EGL_TRUE ? EGL_SUCCESS : eglGetError();
}

EGLint BindToWindow(const WindowRecord* window, EGLContext context) {
    const X11Call call;
    const EGLint error = Bind(window->surface, context);
    if (error == EGL_SUCCESS) {
        // We draw on the host's own thread and on demand: it must not wait for the screen's next refresh, which may be
        // a second away when the window is hidden.
        eglSwapInterval(CurrentEglDisplay()->display, 0);
    }
    return error;
}

} // namespace

bool SetPixelFormat(HDC deviceContext, const PixelFormat& format) {
    if (deviceContext == nullptr || deviceContext->window->gone) {
        return false;
    }
    WindowRecord* window = deviceContext->window;
    if (window->surface != nullptr) {
        return true;
    }
    if (OpenEglDisplay(window->kind, format) == nullptr) {
        return false;
    }
    window->surface = window->kind == WindowKind::X11 ? CreateWindowSurface(window->Drawable())
                                                      : CreatePbuffer(window->shape.width, window->shape.height);
    return window->surface != nullptr;
}

HGLRC CreateContext(HDC deviceContext, HGLRC share) {
    const EglDisplay* egl = CurrentEglDisplay();
    if (deviceContext == nullptr || deviceContext->window->surface == nullptr || egl == nullptr) {
        return nullptr;
    }
    const X11Call call;
    const DesktopGlScope scope;
    const EGLContext shareContext = share != nullptr ? share->context : EGL_NO_CONTEXT;
    const EGLContext context = eglCreateContext(egl->display, egl->config, shareContext, nullptr);
    if (context == EGL_NO_CONTEXT) {
        return nullptr;
    }
    static auto& records = *new std::vector<HGLRC>; // keeps the records reachable
    records.push_back(new ContextRecord{context});
    return records.back();
}

void DeleteContext(HGLRC context) {
    if (context == nullptr || context->context == EGL_NO_CONTEXT) {
        return;
    }
    const X11Call call;
    const DesktopGlScope scope;
    const EGLDisplay display = CurrentEglDisplay()->display;
    if (eglGetCurrentContext() == context->context) {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    eglDestroyContext(display, context->context);
    context->context = EGL_NO_CONTEXT;
}

// Without a window this may be another thread: nothing here that talks to the X server.
bool MakeCurrent(HDC deviceContext, HGLRC context) {
    if (CurrentEglDisplay() == nullptr) {
        return context == nullptr; // nothing can be current yet
    }
    if (context == nullptr) {
        return Bind(EGL_NO_SURFACE, EGL_NO_CONTEXT) == EGL_SUCCESS;
    }
    if (context->context == EGL_NO_CONTEXT) {
        return false;
    }
    if (deviceContext == nullptr) {
        return Bind(EGL_NO_SURFACE, context->context) == EGL_SUCCESS;
    }
    if (deviceContext->window->surface == nullptr) {
        return false;
    }
    const EGLint error = BindToWindow(deviceContext->window, context->context);
    if (error == EGL_BAD_ACCESS) {
        WarnOfForeignContext();
    }
    return error == EGL_SUCCESS;
}

void SwapWindowBuffers(HDC deviceContext) {
    if (deviceContext == nullptr || deviceContext->window->gone || deviceContext->window->surface == nullptr) {
        return;
    }
    const X11Call call;
    eglSwapBuffers(CurrentEglDisplay()->display, deviceContext->window->surface);
    if (X11Display() != nullptr) {
        XFlush(X11Display()); // a small picture may still be in the connection's buffer
    }
}

// For a name that it does not know the look-up answers with an entry point that does nothing; the OpenGL library itself
// tells which names exist.
GlProcedure GetGlProcedure(const char* name) {
    static void* const s_library = dlopen("libGL.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (s_library == nullptr || dlsym(s_library, name) == nullptr) {
        return nullptr;
    }
    return eglGetProcAddress(name);
}

} // namespace platform

bool MakeContextCurrent(HDC deviceContext, HGLRC context) {
    return platform::MakeCurrent(deviceContext, context);
}

} // namespace KOVA::Quorvex
