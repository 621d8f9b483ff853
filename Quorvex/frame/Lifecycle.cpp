// RenderFrame from construction over attachment to a window to release, and its place in the scheduler.

#include <algorithm>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/WindowSystem.h>

namespace KOVA::Quorvex {

RenderFrame* FindBusyFrame() {
    const auto& frames = Quorvex::s_vRenderFrames;
    const auto busy =
        std::find_if(frames.begin(), frames.end(), [](const RenderFrame* frame) { return frame->IsBusy(); });
    return busy != frames.end() ? *busy : nullptr;
}

RenderFrame::RenderFrame() : m_counterFrequency(platform::CounterFrequency()) {}

RenderFrame::RenderFrame(const RenderFrame& other) = default;

RenderFrame& RenderFrame::operator=(const RenderFrame& other) = default;

RenderFrame::~RenderFrame() {
    Release();
}

// A frame that is attached already lets go first: it would take its own procedure for the window's.
bool RenderFrame::Init(HWND window, View* view) {
    if (window != nullptr && view != nullptr && OwnsWindow()) {
        Release();
    }
    return Init(platform::AcquireDeviceContext(window), view);
}

bool RenderFrame::Init(HDC deviceContext, View* view) {
    if (deviceContext == nullptr || view == nullptr) {
        return false;
    }
    if (OwnsWindow()) {
        if (deviceContext == m_deviceContext) { // goes on being used
            m_deviceContext = nullptr;
        }
        Release();
    }
    m_window = platform::WindowOf(deviceContext);
    m_previousProcedure = platform::GetWindowProcedure(m_window);
    platform::SetWindowProcedure(m_window, WndProcRenderFrame);
    platform::SetWindowUserData(m_window, this);
    m_view = view;
    m_deviceContext = deviceContext;
    if (deviceContext != Quorvex::s_hDeviceContext) {
        platform::PixelFormat format;
        format.swapExchange = true;
        if (!platform::SetPixelFormat(deviceContext, format)) {
            Release();
            return false;
        }
    }
    unsigned int width = m_screenWidth;
    unsigned int height = m_screenHeight;
    platform::GetClientSize(m_window, &width, &height);
    InitGL(width, height);
    return true;
}

bool RenderFrame::InitGL(unsigned int width, unsigned int height) {
    SetScreenSize(width, height);
    Quorvex::s_vRenderFrames.push_back(this);
    return true;
}

bool RenderFrame::InitFailed() {
    Release();
    return false;
}

void RenderFrame::ReleaseGL() {
    Quorvex::s_jobFast.remove(this);
    Quorvex::s_jobQuality.remove(this);
    Quorvex::s_vRenderFrames.remove(this);
}

// A copy has the handles too, but the window answers to the original.
bool RenderFrame::OwnsWindow() const {
    return m_window != nullptr && platform::GetWindowUserData(m_window) == this;
}

void RenderFrame::Release() {
    if (m_window == nullptr) {
        return;
    }
    ReleaseGL();
    if (OwnsWindow()) {
        platform::SetWindowProcedure(m_window, m_previousProcedure);
        platform::SetWindowUserData(m_window, nullptr);
        if (m_deviceContext != nullptr && m_deviceContext != Quorvex::s_hDeviceContext) {
            platform::MakeCurrent(Quorvex::s_hDeviceContext, Quorvex::s_hRenderContext);
            platform::ReleaseDeviceContext(m_window, m_deviceContext);
        }
    }
    m_window = nullptr;
}

void RenderFrame::Render() {
    auto& jobs = Quorvex::s_jobFast;
    if (m_aviHighQuality || m_abort) {
        jobs.remove(this);
        return;
    }
    if (std::find(jobs.begin(), jobs.end(), this) == jobs.end()) {
        jobs.push_back(this);
    }
}

void RenderFrame::SetScreenSize(unsigned int width, unsigned int height) {
    m_screenWidth = width;
    m_screenHeight = height;
}

void RenderFrame::SetBackgroundColor(const ColorRGBA& color) {
    SetBackgroundColor(color, color);
}

void RenderFrame::SetBackgroundColor(const ColorRGBA& top, const ColorRGBA& bottom) {
    m_backgroundTop = top;
    m_backgroundBottom = bottom;
}

ColorRGBA RenderFrame::GetBackgroundColor() const {
    return (m_backgroundTop + m_backgroundBottom) * 0.5F;
}

bool RenderFrame::SupportsStencil() const {
    return !m_composedBuffer.IsInit() || m_composedBuffer.SupportsStencil();
}

} // namespace KOVA::Quorvex
