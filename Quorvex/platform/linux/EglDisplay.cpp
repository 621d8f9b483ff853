#include <Quorvex/platform/linux/EglDisplay.h>

#include <optional>
#include <vector>

#include <EGL/eglext.h>

#include <Quorvex/platform/linux/X11Connection.h>

namespace KOVA::Quorvex::platform {

namespace {

EglDisplay s_display;

EGLint Attribute(EGLDisplay display, EGLConfig config, EGLint name) {
    EGLint value = 0;
    eglGetConfigAttrib(display, config, name, &value);
    return value;
}

// Visual 0 takes any. The system sorts by size, so that the first configuration that fits is the smallest one; it
// does not look at the visual itself.
std::optional<EGLConfig> ChooseConfig(EGLDisplay display, const PixelFormat& format, EGLint surfaces, EGLint visual) {
    const EGLint component = format.colorBits >= 24 ? 8 : 5;
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             surfaces,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,
                             EGL_RED_SIZE,
                             component,
                             EGL_GREEN_SIZE,
                             component,
                             EGL_BLUE_SIZE,
                             component,
                             EGL_ALPHA_SIZE,
                             visual == 0 ? component : 0,
                             EGL_DEPTH_SIZE,
                             format.depthBits,
                             EGL_STENCIL_SIZE,
                             format.stencilBits,
                             EGL_SAMPLES,
                             0,
                             EGL_NONE};
    EGLint count = 0;
    eglChooseConfig(display, wanted, nullptr, 0, &count);
    std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
    eglChooseConfig(display, wanted, configs.data(), count, &count);
    for (const EGLConfig config : configs) {
        const bool visualFits = visual == 0 || Attribute(display, config, EGL_NATIVE_VISUAL_ID) == visual;
        if (visualFits && Attribute(display, config, EGL_SAMPLES) == 0) {
            return config;
        }
    }
    return std::nullopt;
}

// Initialises a display and takes it when it has what is asked for. One that does not suit is not terminated: the host
// may be using it.
bool TryDisplay(EGLDisplay display, const PixelFormat& format, EGLint surfaces, EGLint visual) {
    if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
        return false;
    }
    const std::optional<EGLConfig> config = ChooseConfig(display, format, surfaces, visual);
    if (config) {
        s_display = {display, *config, visual != 0};
    }
    return config.has_value();
}

bool TryX11(const PixelFormat& format) {
    const X11Call call;
    const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_X11_EXT, X11Display(), nullptr);
    const VisualID visual = XVisualIDFromVisual(XDefaultVisual(X11Display(), XDefaultScreen(X11Display())));
    return TryDisplay(display, format, EGL_WINDOW_BIT | EGL_PBUFFER_BIT, static_cast<EGLint>(visual));
}

bool TrySurfaceless(const PixelFormat& format) {
    const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    return TryDisplay(display, format, EGL_PBUFFER_BIT, 0);
}

bool TryDevices(const PixelFormat& format) {
    const auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLDeviceEXT devices[16];
    EGLint count = 0;
    if (queryDevices == nullptr || queryDevices(16, devices, &count) == EGL_FALSE) {
        return false;
    }
    for (EGLint i = 0; i < count; ++i) {
        const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
        if (TryDisplay(display, format, EGL_PBUFFER_BIT, 0)) {
            return true;
        }
    }
    return false;
}

} // namespace

const EglDisplay* CurrentEglDisplay() {
    return s_display.display != EGL_NO_DISPLAY ? &s_display : nullptr;
}

const EglDisplay* OpenEglDisplay(WindowKind kind, const PixelFormat& format) {
    const bool x11 = kind == WindowKind::X11;
    if (CurrentEglDisplay() == nullptr && !(x11 ? TryX11(format) : TrySurfaceless(format) || TryDevices(format))) {
        return nullptr;
    }
    const bool suits = Attribute(s_display.display, s_display.config, EGL_DEPTH_SIZE) >= format.depthBits &&
                       Attribute(s_display.display, s_display.config, EGL_STENCIL_SIZE) >= format.stencilBits &&
                       (s_display.x11 || !x11);
    return suits ? &s_display : nullptr;
}

} // namespace KOVA::Quorvex::platform
