// The window procedure of attached windows, and messages that are let through while a pass is drawn.

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/PassProgress.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/WindowSystem.h>

namespace KOVA::Quorvex {

namespace {

constexpr float BRIGHT_BACKGROUND = 1.5F; // sum of red, green and blue

} // namespace

LRESULT RenderFrame::WndProcRenderFrame(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const frame = static_cast<RenderFrame*>(platform::GetWindowUserData(window));
    if (frame == nullptr) {
        return platform::DefaultWindowProcedure(window, message, wParam, lParam);
    }
    const WNDPROC previous = frame->m_previousProcedure;
    if (message == WM_PAINT) {
        platform::BeginWindowPaint(window);
        if (!frame->m_busy) {
            frame->Present();
        }
        platform::EndWindowPaint(window);
        return 0;
    }
    if (message == WM_SIZE) {
        const auto width = static_cast<unsigned int>(lParam & 0xFFFF);
        const auto height = static_cast<unsigned int>((lParam >> 16) & 0xFFFF);
        if (wParam != SIZE_MINIMIZED && width != 0 && height != 0) {
            frame->SetScreenSize(width, height);
            if (!frame->m_busy) {
                frame->Present();
            }
        }
    }
    if (message == WM_DESTROY) {
        // The host should have released the frame before. A pass that is under way stops at its next report.
        frame->AbortRendering();
        frame->Release();
    }
    return platform::CallWindowProcedure(previous, window, message, wParam, lParam);
}

bool RenderFrame::Progress(float fraction) {
    const unsigned int objects = GetNumObjects();
    m_progress = PassProgress(fraction, m_objectsDone, objects, m_stereoMode != STEREO_NONE);
    if (m_deviceContext != nullptr && objects != 0) {
        const ColorRGBA& bottom = m_backgroundBottom;
        platform::DrawProgressLine(m_deviceContext, ProgressLineEnd(m_screenWidth, m_progress),
                                   static_cast<int>(m_screenHeight) - 1,
                                   bottom.r + bottom.g + bottom.b >= BRIGHT_BACKGROUND);
    }
    while (platform::DispatchOneMessage()) {
        if (Quorvex::BreakRendering() || m_abort) {
            return true;
        }
    }
    return false;
}

bool RenderFrame::ProgressObject() {
    m_objectsDone += 1.0F;
    return Progress(0.0F);
}

} // namespace KOVA::Quorvex
