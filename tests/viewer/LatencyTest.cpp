// How long input waits while a quality pass is drawn.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include <QApplication>
#include <QKeyEvent>

#include <gtest/gtest.h>

#include <Quorvex/core/Facade.h>
#include <Quorvex/volume/VolumeBuilder.h>
#include <Quorvex/volume/VolumeWriter.h>

#include <viewer/TransferEditor.h>
#include <viewer/VolumePanel.h>

#include "ViewerHost.h"

// After Qt: its macros take names from everyone.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#undef KeyPress

namespace KOVA::Quorvex::viewer {

namespace {

using Clock = std::chrono::steady_clock;

// Presses a key every now and then, as someone at the keyboard would: from outside, through the X server. Notes how
// long each press takes to reach the widget, and whether a quality pass was under way.
class Typist : public QObject {
public:
    explicit Typist(int presses) : m_thread([this, presses] { Type(presses); }) {}
    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;
    ~Typist() override { m_thread.join(); }

    bool IsDone() const { return m_done; }
    std::vector<double> milliseconds;
    int duringPass = 0;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && dynamic_cast<QKeyEvent&>(*event).key() == Qt::Key_F7) {
            const std::lock_guard lock(m_mutex);
            if (m_waiting) {
                m_waiting = false;
                milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - m_pressed).count());
                duringPass += Quorvex::GetBusyFrame() != nullptr ? 1 : 0;
            }
            return true;
        }
        return false;
    }

private:
    void Type(int presses) {
        Display* const display = XOpenDisplay(nullptr);
        const KeyCode key = XKeysymToKeycode(display, XK_F7);
        std::mt19937 random(512);
        std::uniform_int_distribution<int> pause(20, 90); // milliseconds
        for (int i = 0; i < presses; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(pause(random)));
            {
                const std::lock_guard lock(m_mutex);
                m_pressed = Clock::now();
                m_waiting = true;
            }
            XTestFakeKeyEvent(display, key, True, CurrentTime);
            XTestFakeKeyEvent(display, key, False, CurrentTime);
            XSync(display, False);
            for (int wait = 0; wait < 2000 && IsWaiting(); ++wait) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        XCloseDisplay(display);
        m_done = true;
    }

    bool IsWaiting() {
        const std::lock_guard lock(m_mutex);
        return m_waiting;
    }

    std::mutex m_mutex; // guards the next two
    Clock::time_point m_pressed;
    bool m_waiting = false;
    std::atomic<bool> m_done{false};
    std::thread m_thread; // last: it uses the others
};

double Quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

unsigned int FromEnvironment(const char* name, unsigned int otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? static_cast<unsigned int>(std::atoi(text)) : otherwise;
}

// Material with holes and noise, so that no brick is empty.
void WriteVolume(const QString& path, unsigned int size) {
    const Volume volume = VolumeBuilder::BuildBox(size, size, size);
    VolumeData& data = volume.GetData();
    std::uint32_t state = 1;
    for (unsigned int z = 0; z < size; ++z) {
        unsigned char* voxel = data.Slice(z);
        for (unsigned int y = 0; y < size; ++y) {
            for (unsigned int x = 0; x < size; ++x) {
                state = state * 1664525U + 1013904223U;
                const bool material = (((x / 24) ^ (y / 24) ^ (z / 24)) & 1U) != 0;
                *voxel++ = static_cast<unsigned char>((material ? 130U : 30U) + (state >> 27));
            }
        }
    }
    ASSERT_TRUE(VolumeWriter::WriteREK(path.toLocal8Bit().constData(), data));
}

// By hand, for the figures of a large volume: QUORVEX_LATENCY_VOXELS=512 QUORVEX_LATENCY_PRESSES=200.
TEST(LatencyTest, InputIsDeliveredDuringQualityPasses) {
    const unsigned int size = FromEnvironment("QUORVEX_LATENCY_VOXELS", 160);
    const auto presses = static_cast<int>(FromEnvironment("QUORVEX_LATENCY_PRESSES", 30));
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("volume.rek"));
    WriteVolume(path, size);
    ViewerHost host;
    host.Window().Open({path});
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return host.Window().GetVolumePanel().GetVolume() != nullptr; }, 120000));
    host.Window().GetVolumePanel().UsePreset(1); // glass: every voxel counts
    VolumePart::Look look = host.Window().GetVolumePanel().GetVolume()->GetLook();
    look.samples = size < 400 ? 8.0 : 2.0; // small ones would be done too soon
    host.Window().GetVolumePanel().GetVolume()->SetLook(look);
    host.Window().GetScene().Refresh();

    Typist typist(presses);
    qApp->installEventFilter(&typist);
    ViewerHost::WaitUntil(
        [&] {
            // When a pass is done the next one begins: nothing else is to be measured.
            if (Quorvex::s_jobFast.empty() && Quorvex::s_jobQuality.empty()) {
                host.Frame().Refresh();
            }
            return typist.IsDone();
        },
        600000);
    qApp->removeEventFilter(&typist);
    ASSERT_GE(typist.milliseconds.size(), static_cast<std::size_t>(presses) * 9 / 10);
    const double median = Quantile(typist.milliseconds, 0.5);
    const double worst = Quantile(typist.milliseconds, 0.99);
    std::printf("%u^3: %zu key presses, %d in a quality pass; delivered after %.1f ms (median), %.1f ms (99 of 100), "
                "%.1f ms (longest)\n",
                size, typist.milliseconds.size(), typist.duringPass, median, worst, Quantile(typist.milliseconds, 1.0));

    // Fast passes are drawn in one go. They come to what the time allows.
    std::vector<double> fast;
    QObject::connect(&host.Bridge(), &EventBridge::FastPassDrawn,
                     [&](RenderFrame* frame) { fast.push_back(1000.0 * frame->GetPassDuration()); });
    for (std::size_t i = 0; i < 20; ++i) {
        host.Window().GetFrames().ChangeCamera([](CameraRig& rig) { rig.Turn(100, 100, 110, 104); });
        ViewerHost::WaitUntil([&] { return fast.size() > i; });
    }
    std::printf("fast passes while it is turned: %.1f ms (median), %.1f ms (longest)\n", Quantile(fast, 0.5),
                Quantile(fast, 1.0));
    EXPECT_GT(typist.duringPass, presses / 3) << "the pass let no input through";
}

} // namespace

} // namespace KOVA::Quorvex::viewer
