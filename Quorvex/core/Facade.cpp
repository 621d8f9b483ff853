#include <Quorvex/core/Facade.h>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/ExtensionTokens.h>
#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/frame/FrameBuffer.h>
#include <Quorvex/mesh/MeshRenderer.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/Video.h>
#include <Quorvex/platform/WindowSystem.h>
#include <Quorvex/volume/VolumeRenderer.h>

namespace KOVA::Quorvex {

HWND Quorvex::s_hWnd = nullptr;
unsigned int Quorvex::s_uiQXExtensions = 0;
RenderFrame* Quorvex::s_pBusy = nullptr;
HGLRC Quorvex::s_hRenderContextMultiThread = nullptr;
HGLRC Quorvex::s_hRenderContext = nullptr;
HDC Quorvex::s_hDeviceContext = nullptr;
std::list<RenderFrame*> Quorvex::s_jobFast;
std::list<RenderFrame*> Quorvex::s_jobQuality;
std::list<RenderFrame*> Quorvex::s_vRenderFrames;

namespace {

constexpr unsigned int TIMER_PERIOD_MS = 25;

} // namespace

bool Quorvex::Init(HWND window, HDC deviceContext) {
    SetGlThread();
    s_hDeviceContext = deviceContext;
    s_hWnd = window;
    if (!platform::StartThreadTimer(TIMER_PERIOD_MS, TimerProc)) {
        return false;
    }
    if (!platform::SetPixelFormat(deviceContext, platform::PixelFormat())) {
        return false;
    }
    s_hRenderContext = platform::CreateContext(deviceContext, nullptr);
    if (s_hRenderContext == nullptr) {
        return false;
    }
    s_hRenderContextMultiThread = platform::CreateContext(deviceContext, s_hRenderContext);
    if (s_hRenderContextMultiThread == nullptr) {
        return false;
    }
    if (!platform::MakeCurrent(deviceContext, s_hRenderContext)) {
        return false;
    }
    platform::InitVideo();
    return InitGL();
}

bool Quorvex::Init(HWND window) {
    return Init(window, platform::AcquireDeviceContext(window));
}

bool Quorvex::Init(HDC deviceContext) {
    return Init(platform::WindowOf(deviceContext), deviceContext);
}

bool Quorvex::InitGL() {
    if (isExtensionSupported("GL_ARB_shader_objects") && isExtensionSupported("GL_ARB_vertex_shader") &&
        isExtensionSupported("GL_ARB_fragment_shader") && isExtensionSupported("GL_ARB_shading_language_100")) {
        s_uiQXExtensions |= CAPABILITY_SHADER;
        initShader();
    }
    if (FrameBuffer::Init()) {
        s_uiQXExtensions |= CAPABILITY_FRAME_BUFFER;
    }
    MeshRenderer::Init();
    s_uiQXExtensions |= CAPABILITY_BASE;
    if (VolumeRenderer::Init()) {
        s_uiQXExtensions |= CAPABILITY_VOLUME;
    }
    return true;
}

void Quorvex::Release() {
    platform::ReleaseVideo();
    ReleaseGL();
    if (s_hRenderContext != nullptr) {
        platform::DeleteContext(s_hRenderContext);
    }
}

void Quorvex::ReleaseGL() {
    MeshRenderer::Release();
    VolumeRenderer::Release();
}

bool Quorvex::CheckGLExtension(const char* names) {
    const char* extensions = GetGLExtensionString();
    return AreExtensionTokens(extensions != nullptr ? extensions : "", names);
}

std::vector<ICINFO> Quorvex::GetInstalledAVICodecs() {
    return platform::InstalledCodecs();
}

const char* Quorvex::GetGLExtensionString() {
    return reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
}

const char* Quorvex::GetGLExtensionString(unsigned int bit) {
    switch (bit) {
    case CAPABILITY_FRAME_BUFFER:
        return FrameBuffer::GetGLExtensionString();
    case CAPABILITY_VOLUME:
        return VolumeRenderer::GetGLExtensionString();
    default:
        return nullptr;
    }
}

} // namespace KOVA::Quorvex
