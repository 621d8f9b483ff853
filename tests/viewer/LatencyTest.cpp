// How long input waits: while a volume is loaded, while quality passes are drawn, while a picture is taken to be kept.

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
#include <QTimer>

#include <gtest/gtest.h>

#include <Quorvex/core/Facade.h>
#include <Quorvex/volume/VolumeBuilder.h>
#include <Quorvex/volume/VolumeWriter.h>

#include <viewer/TransferEditor.h>
#include <viewer/VolumePanel.h>

#include "ViewerHost.h"
#include "XKeyboard.h"

namespace KOVA::Quorvex::viewer {

namespace {

using Clock = std::chrono::steady_clock;

// Presses a key every now and then, as someone at the keyboard would: from outside, through the X server. Notes how
// long each press takes to reach the widget, and whether a quality pass was under way then.
class Typist : public QObject {
public:
    // Until it has pressed so often or is told to stop.
    explicit Typist(int presses) : m_thread([this, presses] { Type(presses); }) { qApp->installEventFilter(this); }
    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;
    ~Typist() override {
        m_stop = true;
        m_thread.join();
    }

    bool IsDone() const { return m_done; }
    const std::vector<double>& InPasses() const { return m_inPasses; } // milliseconds
    const std::vector<double>& Elsewhere() const { return m_elsewhere; }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && dynamic_cast<QKeyEvent&>(*event).key() == Qt::Key_F7) {
            const std::lock_guard lock(m_mutex);
            if (m_waiting) {
                m_waiting = false;
                const auto& frames = Quorvex::s_vRenderFrames;
                const bool inPass =
                    std::any_of(frames.begin(), frames.end(), [](const RenderFrame* frame) { return frame->IsBusy(); });
                (inPass ? m_inPasses : m_elsewhere)
                    .push_back(std::chrono::duration<double, std::milli>(Clock::now() - m_pressed).count());
            }
            return true;
        }
        return false;
    }

private:
    void Type(int presses) {
        XKeyboard keyboard;
        std::mt19937 random(512);
        std::uniform_int_distribution<int> pause(20, 90); // milliseconds
        for (int i = 0; i < presses && !m_stop; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(pause(random)));
            {
                const std::lock_guard lock(m_mutex);
                m_pressed = Clock::now();
                m_waiting = true;
            }
            keyboard.PressF7();
            for (int wait = 0; wait < 2000 && IsWaiting() && !m_stop; ++wait) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        m_done = true;
    }

    bool IsWaiting() {
        const std::lock_guard lock(m_mutex);
        return m_waiting;
    }

    std::vector<double> m_inPasses;
    std::vector<double> m_elsewhere;
    std::mutex m_mutex; // guards the next two
    Clock::time_point m_pressed;
    bool m_waiting = false;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_done{false};
    std::thread m_thread; // last: it uses the others
};

void Report(const char* what, std::vector<double> milliseconds) {
    std::sort(milliseconds.begin(), milliseconds.end());
    const auto quantile = [&](double share) {
        return milliseconds[static_cast<std::size_t>(share * static_cast<double>(milliseconds.size() - 1))];
    };
    if (!milliseconds.empty()) {
        std::printf("%s: %zu; %.1f ms (median), %.1f ms (99 of 100), %.1f ms (longest)\n", what, milliseconds.size(),
                    quantile(0.5), quantile(0.99), quantile(1.0));
    }
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
TEST(LatencyTest, InputComesThroughLoadingPassesAndScreenshots) {
    const unsigned int size = FromEnvironment("QUORVEX_LATENCY_VOXELS", 128);
    const auto presses = static_cast<int>(FromEnvironment("QUORVEX_LATENCY_PRESSES", 20));
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("volume.rek"));
    WriteVolume(path, size);
    ViewerHost host;
    std::vector<double> fastPasses;
    QObject::connect(&host.Bridge(), &EventBridge::FastPassDrawn, &host.Window(),
                     [&](RenderFrame* frame) { fastPasses.push_back(1000.0 * frame->GetPassDuration()); });
    std::printf("%u^3, key presses by where they were delivered:\n", size);

    // Until its first picture is there.
    const auto begin = Clock::now();
    {
        const Typist typist(presses);
        host.Window().Open({path});
        ASSERT_TRUE(ViewerHost::WaitUntil([&] { return !fastPasses.empty() && !host.Window().GetLoader().IsBusy(); }));
        std::printf("loaded and shown after %.0f ms\n",
                    std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        Report("while it is loaded", typist.Elsewhere());
    }

    VolumePanel& panel = host.Window().GetVolumePanel();
    panel.UsePreset(1); // glass: every voxel counts
    VolumePart::Look look = panel.GetVolume()->GetLook();
    look.samples = size < 400 ? 4.0 : 2.0; // small ones would be done too soon
    panel.GetVolume()->SetLook(look);
    host.Window().GetScene().Refresh();
    {
        const Typist typist(presses);
        ViewerHost::WaitUntil(
            [&] {
                // When a pass is done the next one begins: nothing else is to be measured.
                if (Quorvex::s_jobFast.empty() && Quorvex::s_jobQuality.empty()) {
                    host.Frame().Refresh();
                }
                return typist.IsDone();
            },
            600000);
        Report("in quality passes", typist.InPasses());
        Report("elsewhere", typist.Elsewhere());
        EXPECT_GE(typist.InPasses().size() + typist.Elsewhere().size(), static_cast<std::size_t>(presses) * 9 / 10);
        EXPECT_GT(typist.InPasses().size(), static_cast<std::size_t>(presses) / 3) << "passes let no input through";
    }

    // Fast passes are drawn in one go. They come to what the time allows.
    fastPasses.clear();
    for (std::size_t i = 0; i < 20; ++i) {
        host.Window().GetFrames().ChangeCamera([](CameraRig& rig) { rig.Turn(100, 100, 110, 104); });
        ViewerHost::WaitUntil([&] { return fastPasses.size() > i; });
    }
    Report("fast passes while it is turned", fastPasses);

    // A picture is taken. Keys come through, and who moves the camera meanwhile sees that first and gets a picture of
    // it.
    const QString saved = folder.filePath(QStringLiteral("saved.png"));
    {
        const Typist typist(1000);
        fastPasses.clear();
        bool inAttempt = false;
        QTimer::singleShot(100, &host.Window(), [&] {
            inAttempt = host.Frame().Frame().IsBusy() && Quorvex::GetBusyFrame() == nullptr;
            host.Window().GetFrames().ChangeCamera([](CameraRig& rig) { rig.Turn(100, 100, 130, 104); });
        });
        host.Window().SaveScreenshot(saved);
        EXPECT_TRUE(ViewerHost::WaitUntil([&] { return !fastPasses.empty(); }));
        EXPECT_TRUE(inAttempt && !QFile::exists(saved));
        ASSERT_TRUE(ViewerHost::WaitUntil([&] { return QFile::exists(saved); }, 600000));
        Report("while a picture is taken", typist.InPasses());
    }
    ASSERT_TRUE(ViewerHost::WaitUntil([&] { return Quorvex::s_jobQuality.empty(); }, 600000));
    ASSERT_TRUE(host.Settle());
    const QImage shown = ViewerHost::Picture(host.Frame());
    ViewerHost::Keep(QImage(saved), "latency-saved.png");
    ViewerHost::Keep(shown, "latency-shown.png");
    EXPECT_LT(ViewerHost::CountDifferent(QImage(saved).convertToFormat(QImage::Format_RGB32), shown, 24),
              shown.width() * shown.height() / 1000);
}

} // namespace

} // namespace KOVA::Quorvex::viewer
