// The scheduler: what one tick of the timer draws.

#include <algorithm>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

namespace {

// Whatever a pass does, also throw: its frame is not the busy one afterwards.
class BusyFrame {
public:
    explicit BusyFrame(RenderFrame* frame) { Quorvex::s_pBusy = frame; }
    BusyFrame(const BusyFrame&) = delete;
    BusyFrame& operator=(const BusyFrame&) = delete;
    ~BusyFrame() { Quorvex::s_pBusy = nullptr; }
};

bool IsRegistered(RenderFrame* frame) {
    const auto& frames = Quorvex::s_vRenderFrames;
    return std::find(frames.begin(), frames.end(), frame) != frames.end();
}

// Takes the frame's first entry off a job list at the end of its pass, also when that throws. Until then the entry
// stands for the request, so that asking again during the pass makes no second one.
class ServedJob {
public:
    ServedJob(std::list<RenderFrame*>& jobs, RenderFrame* frame) : m_jobs(jobs), m_frame(frame) {}
    ServedJob(const ServedJob&) = delete;
    ServedJob& operator=(const ServedJob&) = delete;
    ~ServedJob() {
        const auto found = std::find(m_jobs.begin(), m_jobs.end(), m_frame);
        if (found != m_jobs.end()) {
            m_jobs.erase(found);
        }
    }

private:
    std::list<RenderFrame*>& m_jobs;
    RenderFrame* m_frame;
};

} // namespace

void Quorvex::TimerProc(HWND /*window*/, UINT /*message*/, UINT_PTR /*id*/, DWORD /*time*/) {
    // A pass dispatches messages, so this tick may be inside one: nothing is drawn then, not even another frame.
    const bool drawing = std::any_of(s_vRenderFrames.begin(), s_vRenderFrames.end(),
                                     [](const RenderFrame* frame) { return frame->IsBusy(); });
    if (s_pBusy != nullptr || drawing) {
        return;
    }
    if (!s_jobFast.empty()) {
        DrawFastJob();
    } else if (!s_jobQuality.empty()) {
        DrawQualityJob();
    }
}

void Quorvex::DrawFastJob() {
    RenderFrame* const frame = s_jobFast.front();
    const ServedJob served(s_jobFast, frame);
    if (platform::MakeCurrent(frame->GetDeviceContext(), s_hRenderContext)) {
        frame->DrawGL(frame->GetScreenWidth(), frame->GetScreenHeight(), false);
        platform::SwapWindowBuffers(frame->GetDeviceContext());
    }
    s_jobQuality.remove(frame);
    if (IsRegistered(frame) && frame->GetQualityThreshold() > 1.0F) {
        s_jobQuality.push_back(frame);
    }
}

void Quorvex::DrawQualityJob() {
    RenderFrame* const frame = s_jobQuality.front();
    if (frame->IsAborted()) {
        s_jobQuality.pop_front();
        return;
    }
    const BusyFrame busy(frame);
    // An interrupted pass stays at the front and is tried again. The host may have released the frame meanwhile: its
    // entry is gone then.
    if (frame->Render(true, frame->GetScreenWidth(), frame->GetScreenHeight())) {
        const ServedJob served(s_jobQuality, frame);
    }
}

} // namespace KOVA::Quorvex
