// Recordings: frame by frame under the host's control, or in one call.

#include <cmath>
#include <numbers>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/Recording.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

// The frame draws itself: the scheduler leaves it alone meanwhile, and brings the window up to date afterwards.
class RenderFrame::SelfRecording {
public:
    explicit SelfRecording(RenderFrame& frame) : m_frame(frame), m_recording(frame.m_recording) {
        m_frame.m_aviHighQuality = true;
        m_frame.Render(); // takes what was asked for back
        Quorvex::s_jobQuality.remove(&m_frame);
    }
    SelfRecording(const SelfRecording&) = delete;
    SelfRecording& operator=(const SelfRecording&) = delete;
    ~SelfRecording() {
        m_frame.m_aviHighQuality = false;
        if (m_failed && m_frame.m_recording == m_recording) { // else the host has stopped it, and it is whole
            m_frame.m_recording.reset();
            m_recording->Discard();
        }
        if (m_frame.m_window != nullptr) {
            m_frame.Render();
        }
    }

    void Succeed() { m_failed = false; }
    Recording& Open() const { return *m_recording; }

private:
    RenderFrame& m_frame;
    std::shared_ptr<Recording> m_recording;
    bool m_failed = true;
};

bool RenderFrame::AVISetCodec(unsigned long handler) {
    const auto code = static_cast<std::uint32_t>(handler);
    m_codecOptions = code != 0 ? platform::MakeCodecOptions(code) : nullptr;
    return true;
}

bool RenderFrame::OpenRecording(const std::string& path, Size size, unsigned long codec) {
    if (size.width == 0 || size.height == 0 || size.width % 4 != 0 || size.height % 4 != 0 ||
        !Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER)) {
        return false;
    }
    AVIStop();
    if (codec != 0) {
        AVISetCodec(codec);
    }
    auto options = m_codecOptions;
    m_recording = Recording::Open(path.c_str(), size.width, size.height, m_window, options);
    if (m_recording != nullptr) {
        m_codecOptions = options; // perhaps chosen just now
    }
    return m_recording != nullptr;
}

bool RenderFrame::AVIStart(std::string path, unsigned long codec) {
    const Size size{m_screenWidth / 4 * 4, m_screenHeight / 4 * 4};
    if (!OpenRecording(path, size, codec)) {
        return false;
    }
    m_aviFrames = 0;
    m_aviSize = size;
    return true;
}

bool RenderFrame::AVIStop() {
    const std::shared_ptr<Recording> recording = std::move(m_recording);
    m_recording.reset();
    return recording == nullptr || recording->Finish();
}

int RenderFrame::AddAviFrame() {
    const std::shared_ptr<Recording> recording = m_recording;
    if (recording != nullptr && !m_aviHighQuality) {
        auto picture = DrawRecordedPicture(recording.get(), m_aviSize, true);
        if (picture != nullptr && recording->Add(std::move(picture))) {
            ++m_aviFrames;
        }
    }
    return static_cast<int>(m_aviFrames);
}

// Input that interrupts a pass has its own drawn, and the pass is made again. The host may end the recording, or the
// frame, from a message that a pass lets through.
std::unique_ptr<unsigned char[]> RenderFrame::DrawRecordedPicture(const Recording* recording, Size size, bool show) {
    if (FindBusyFrame() != nullptr) {
        return nullptr;
    }
    const auto goesOn = [&] {
        return m_view != nullptr && m_window != nullptr && !m_abort && m_recording.get() == recording;
    };
    while (goesOn()) {
        if (DrawCapture(size, show)) {
            return goesOn() ? ReadComposedPicture(size.width, size.height) : nullptr;
        }
        if (!m_stopped) {
            return nullptr; // the system does not let it be drawn
        }
        if (Quorvex::BreakRendering()) {
            Quorvex::TimerProc(nullptr, 0, 0, 0);
        }
    }
    return nullptr;
}

bool RenderFrame::RecordFrames(const std::string& path, Size size, unsigned int frames,
                               const std::function<void(unsigned int frame)>& prepare) {
    if (m_aviHighQuality || m_view == nullptr || FindBusyFrame() != nullptr || !OpenRecording(path, size, 0)) {
        return false;
    }
    SelfRecording self(*this);
    for (unsigned int frame = 0; frame < frames; ++frame) {
        prepare(frame);
        auto picture = DrawRecordedPicture(&self.Open(), size, false);
        if (picture == nullptr || !self.Open().Add(std::move(picture))) {
            return false;
        }
    }
    self.Succeed();
    return AVIStop();
}

bool RenderFrame::AVIRotate(std::string path, unsigned int width, unsigned int height, const Vector3f& axis,
                            unsigned int frames) {
    const auto step = static_cast<float>(2.0 * std::numbers::pi / frames);
    const Vector4f turn(axis.x, axis.y, axis.z, step);
    return RecordFrames(path, {width, height}, frames, [&](unsigned int /*frame*/) {
        if (m_view != nullptr) { // the host may take it away
            m_view->RotateWorld(turn);
        }
    });
}

bool RenderFrame::AVIAnimate(std::string path, unsigned int width, unsigned int height, unsigned int frames,
                             void (*callback)(void* user, unsigned int frame, unsigned int frames), void* user) {
    return callback != nullptr &&
           RecordFrames(path, {width, height}, frames, [&](unsigned int frame) { callback(user, frame, frames); });
}

} // namespace KOVA::Quorvex
