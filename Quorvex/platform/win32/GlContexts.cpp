#include <Quorvex/platform/Gl.h>

#include <cstdint>

#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/win32/HiddenWindows.h>
#include <Quorvex/platform/win32/PixelFormats.h>

namespace KOVA::Quorvex {

namespace platform {

PIXELFORMATDESCRIPTOR DescribeFormat(const PixelFormat& format) {
    PIXELFORMATDESCRIPTOR descriptor{};
    descriptor.nSize = sizeof descriptor;
    descriptor.nVersion = 1;
    descriptor.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
    descriptor.dwFlags |= format.doubleBuffer ? PFD_DOUBLEBUFFER : 0U;
    descriptor.dwFlags |= format.swapExchange ? PFD_SWAP_EXCHANGE : 0U;
    descriptor.iPixelType = PFD_TYPE_RGBA;
    descriptor.cColorBits = static_cast<BYTE>(format.colorBits);
    descriptor.cDepthBits = static_cast<BYTE>(format.depthBits);
    descriptor.cStencilBits = static_cast<BYTE>(format.stencilBits);
    descriptor.iLayerType = PFD_MAIN_PLANE;
    return descriptor;
}

namespace {

// What a context is made current on when there is no window: the system has no context without a device context.
// Made on the thread of the first context, with the format of that context's window, and kept.
class StandIn {
public:
    void MakeFor(HDC deviceContext) {
        if (m_deviceContext != nullptr) {
            return;
        }
        PIXELFORMATDESCRIPTOR descriptor{};
        const int format = GetPixelFormat(deviceContext);
        const HWND window = CreateHiddenWindow(1, 1);
        const HDC own = window != nullptr ? GetDC(window) : nullptr;
        if (own == nullptr || DescribePixelFormat(own, format, sizeof descriptor, &descriptor) == 0 ||
            ::SetPixelFormat(own, format, &descriptor) == 0) {
            if (window != nullptr) {
                DestroyWindow(window);
            }
            return;
        }
        m_deviceContext = own;
    }
    HDC Get() const { return m_deviceContext; }

private:
    HDC m_deviceContext = nullptr;
};

StandIn s_standIn;

// We draw on the host's own thread and on demand: it must not wait for the screen's next refresh.
void SwapWithoutWaiting() {
    using SwapInterval = BOOL(WINAPI*)(int);
    static const auto s_swapInterval = reinterpret_cast<SwapInterval>(GetGlProcedure("wglSwapIntervalEXT"));
    if (s_swapInterval != nullptr) {
        s_swapInterval(0);
    }
}

} // namespace

bool SetPixelFormat(HDC deviceContext, const PixelFormat& format) {
    if (deviceContext == nullptr) {
        return false;
    }
    // The system accepts a window's first format only.
    if (GetPixelFormat(deviceContext) != 0) {
        return WindowFromDC(deviceContext) != nullptr;
    }
    const PIXELFORMATDESCRIPTOR descriptor = DescribeFormat(format);
    const int index = ChoosePixelFormat(deviceContext, &descriptor);
    return index != 0 && ::SetPixelFormat(deviceContext, index, &descriptor) != 0;
}

HGLRC CreateContext(HDC deviceContext, HGLRC share) {
    if (deviceContext == nullptr) {
        return nullptr;
    }
    const HGLRC context = wglCreateContext(deviceContext);
    if (context != nullptr) {
        s_standIn.MakeFor(deviceContext);
        if (share != nullptr) {
            wglShareLists(share, context);
        }
    }
    return context;
}

void DeleteContext(HGLRC context) {
    if (context == nullptr) {
        return;
    }
    if (wglGetCurrentContext() == context) {
        wglMakeCurrent(nullptr, nullptr);
    }
    wglDeleteContext(context);
}

bool MakeCurrent(HDC deviceContext, HGLRC context) {
    if (context == nullptr) {
        return wglMakeCurrent(nullptr, nullptr) != 0;
    }
    const bool window = deviceContext != nullptr && WindowFromDC(deviceContext) != nullptr;
    if (wglMakeCurrent(window ? deviceContext : s_standIn.Get(), context) == 0) {
        return false;
    }
    if (window) {
        SwapWithoutWaiting();
    }
    return true;
}

void SwapWindowBuffers(HDC deviceContext) {
    if (deviceContext != nullptr && WindowFromDC(deviceContext) != nullptr) {
        ::SwapBuffers(deviceContext);
    }
}

GlProcedure GetGlProcedure(const char* name) {
    // Drivers are known to answer with these small numbers instead of null.
    const auto extension = reinterpret_cast<std::intptr_t>(wglGetProcAddress(name));
    if (extension < -1 || extension > 3) {
        return reinterpret_cast<GlProcedure>(extension);
    }
    // What was in OpenGL from the beginning is exported by the system's library only.
    static const HMODULE s_library = GetModuleHandleA("opengl32.dll");
    return s_library != nullptr ? reinterpret_cast<GlProcedure>(GetProcAddress(s_library, name)) : nullptr;
}

} // namespace platform

bool MakeContextCurrent(HDC deviceContext, HGLRC context) {
    return platform::MakeCurrent(deviceContext, context);
}

} // namespace KOVA::Quorvex
