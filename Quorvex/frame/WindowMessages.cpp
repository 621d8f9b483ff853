// The window procedure of attached windows, and messages that are let through while a pass is drawn.

#include <cstdlib>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/PassProgress.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/WindowSystem.h>

namespace KOVA::Quorvex {

namespace {

constexpr float BRIGHT_BACKGROUND = 1.5F; // sum of red, green and blue

// Looking for messages costs system calls, drawing the line a message: neither is done more often than this.
constexpr double POLL_SECONDS = 0.001;
constexpr double LINE_SECONDS = 0.01;
constexpr unsigned int VISIBLE_STEPS = 50; // in the whole width

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

// Called for every slice of a volume: as long as nothing is due it compares numbers and reads the clock.
bool RenderFrame::Progress(float fraction) {
    const unsigned int objects = GetNumObjects();
    m_progress = PassProgress(fraction, m_objectsDone, objects, m_stereoMode != STEREO_NONE);
    if (IsStopRequested()) {
        m_stopped = true;
        return true;
    }
    const auto now = static_cast<double>(platform::CounterNow());
    if (m_deviceContext != nullptr && objects != 0) {
        ShowProgressLine(now);
    }
    if (now < m_nextPoll) {
        return false;
    }
    const bool stop = LetInputThrough();
    m_nextPoll = static_cast<double>(platform::CounterNow()) + m_counterFrequency * POLL_SECONDS;
    m_stopped = m_stopped || stop;
    return stop;
}

// What was waiting when a pass began goes on waiting: a host that asks for a redraw and then for a capture gets both.
bool RenderFrame::IsStopRequested() const {
    const bool newRequest = Quorvex::BreakRendering() && !(m_busy && Quorvex::s_jobFast.back() == m_waitingRequest);
    return newRequest || m_abort;
}

// A step that can be seen is shown at once, smaller ones a few at a time: each costs a message to the window system.
void RenderFrame::ShowProgressLine(double now) {
    // While a recording is open the line keeps to the part of the window that its pictures show.
    const unsigned int whole = m_recording != nullptr ? 4 : 1;
    const unsigned int width = m_screenWidth / whole * whole;
    const unsigned int height = m_screenHeight / whole * whole;
    const int end = ProgressLineEnd(width, m_progress);
    const bool visible = std::abs(end - m_progressLine) >= static_cast<int>(width / VISIBLE_STEPS) + 1;
    if (end == m_progressLine || (!visible && now < m_nextLine)) {
        return;
    }
    const ColorRGBA& bottom = m_backgroundBottom;
    platform::DrawProgressLine(m_deviceContext, end, static_cast<int>(height) - 1,
                               bottom.r + bottom.g + bottom.b >= BRIGHT_BACKGROUND);
    m_progressLine = end;
    m_nextLine = now + m_counterFrequency * LINE_SECONDS;
}

bool RenderFrame::LetInputThrough() {
    bool delivered = false;
    while (platform::DispatchOneMessage()) {
        delivered = true;
        if (IsStopRequested()) {
            return true;
        }
    }
    if (delivered && m_busy && m_window != nullptr) {
        // What the host did may have left another window current.
        platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext);
    }
    return false;
}

bool RenderFrame::ProgressObject() {
    m_objectsDone += 1.0F;
    return Progress(0.0F);
}

} // namespace KOVA::Quorvex
