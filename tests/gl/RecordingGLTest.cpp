// Recordings: what they hold, who may draw meanwhile, and what is left when they fail.

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>

#include <gmock/gmock.h>

#include <Quorvex/platform/Video.h>

#include <tests/TestDirectory.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

namespace fs = std::filesystem;
using platform::FourCharacters;
using platform::UNCOMPRESSED;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t MOTION_JPEG = FourCharacters('M', 'J', 'P', 'G');
constexpr std::uint32_t NO_CODEC = FourCharacters('N', 'O', 'N', 'E');

// An uncompressed AVI file: whatever its chunks' order, as their headers say.
struct Video {
    std::string bytes;
    std::uint32_t width = 0, height = 0, scale = 0, rate = 0, length = 0;
    std::vector<std::vector<unsigned char>> frames; // as stored
    unsigned int keyFrames = 0;

    explicit Video(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
        if (bytes.size() > 12 && Code(0) == "RIFF" && Code(8) == "AVI ") {
            Walk(12, 8 + std::size_t{At(4)});
        }
    }

    std::uint32_t At(std::size_t place) const {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(bytes.at(place + i));
        }
        return value;
    }
    std::string Code(std::size_t place) const { return bytes.substr(place, 4); }

    void Walk(std::size_t place, std::size_t end) {
        while (place + 8 <= std::min(end, bytes.size())) {
            const std::string code = Code(place);
            const std::size_t size = At(place + 4);
            const std::size_t body = place + 8;
            if (code == "LIST") {
                Walk(body + 4, body + size);
            } else if (code == "strh") {
                EXPECT_EQ(Code(body), "vids");
                scale = At(body + 20);
                rate = At(body + 24);
                length = At(body + 32);
            } else if (code == "strf") {
                width = At(body + 4);
                height = At(body + 8);
            } else if (code == "00db" || code == "00dc") {
                frames.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(body),
                                    bytes.begin() + static_cast<std::ptrdiff_t>(body + size));
            } else if (code == "idx1") {
                for (std::size_t entry = body; entry < body + size; entry += 16) {
                    keyFrames += (At(entry + 4) & 0x10U) != 0 ? 1U : 0U;
                }
            }
            place = body + (size + 1) / 2 * 2;
        }
    }
};

class RecordingGLTest : public GlTest {
protected:
    void TearDown() override {
        SetCodecChooser(nullptr, nullptr);
        GlTest::TearDown();
    }

    std::string Path(const std::string& name) const { return m_folder.Name(name); }
    std::size_t Files() const { return m_folder.Entries(); }

    TestDirectory m_folder;
};

// A scene without symmetry, on a window whose sides are no multiples of 4.
class Stage : public FrameFixture {
public:
    Stage() : FrameFixture(51, 38) {
        frame.SetBackgroundColor(ColorRGBA(0.1F, 0.3F, 0.9F), ColorRGBA(0.9F, 0.5F, 0.0F));
        frame.Add(MakeRectangle(0.9F, -0.1F, 1.1F, 0.1F, 0, {1, 1, 1}));
        frame.AVISetCodec(UNCOMPRESSED);
    }

    // What a frame of the video has to be: a capture, blue first and from the bottom row.
    std::vector<unsigned char> Expected(unsigned int w, unsigned int h) {
        std::vector<unsigned char> rgb;
        EXPECT_TRUE(frame.RenderToPixels(rgb, w, h));
        std::vector<unsigned char> bgr;
        for (unsigned int row = h; row-- > 0;) {
            for (std::size_t i = std::size_t{row} * w * 3; i < std::size_t{row + 1} * w * 3; i += 3) {
                bgr.insert(bgr.end(), {rgb[i + 2], rgb[i + 1], rgb[i]});
            }
        }
        return bgr;
    }

    // Something heavy enough for input to be let through while it is drawn.
    void MakeHeavy() {
        const Mesh sphere = MeshBuilder::BuildSphere({-1, 0, 0}, 0.3F);
        for (int i = 0; i < 300; ++i) {
            frame.Add(sphere);
        }
    }
};

// The direction from the middle of a frame to its white square, in degrees.
double DirectionOfSquare(const std::vector<unsigned char>& bgr, unsigned int width, unsigned int height) {
    double x = 0.0;
    double y = 0.0;
    for (unsigned int row = 0; row < height; ++row) {
        for (unsigned int column = 0; column < width; ++column) {
            const unsigned char* p = bgr.data() + (std::size_t{row} * width + column) * 3;
            if (p[0] == 255 && p[1] == 255 && p[2] == 255) {
                x += column + 0.5 - width / 2.0;
                y += row + 0.5 - height / 2.0;
            }
        }
    }
    return std::atan2(y, x) * 180.0 / std::numbers::pi;
}

TEST_F(RecordingGLTest, FrameByFrameHoldsTheCapturedPictures) {
    Stage stage;
    RenderFrame& frame = stage.frame;
    EXPECT_TRUE(frame.AVIStop()) << "nothing is open";
    EXPECT_EQ(frame.AddAviFrame(), 0);
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(frame.AVIStart(Path("a.avi"), UNCOMPRESSED));
        EXPECT_EQ(Files(), 0U);
        return;
    }
    std::vector<std::vector<unsigned char>> expected;
    ASSERT_TRUE(frame.AVIStart(Path("a.avi"), 0));
    for (int i = 1; i <= 3; ++i) {
        stage.view.TranslateWorld({-0.3F, 0.1F, 0});
        frame.SetAntiAliasing(i == 2 ? 2.0F : 1.0F);
        if (i == 3) { // the recording keeps its size
            ResizeOffscreenWindow(stage.window, 200, 20);
        }
        EXPECT_EQ(frame.AddAviFrame(), i);
        expected.push_back(stage.Expected(48, 36));
    }
    EXPECT_FALSE(fs::exists(Path("a.avi"))) << "the name stands for the whole file";
    EXPECT_TRUE(frame.AVIStop());
    EXPECT_EQ(Files(), 1U);
    EXPECT_EQ(frame.AddAviFrame(), 3);
    EXPECT_TRUE(frame.AVIStop());

    const Video video(Path("a.avi"));
    EXPECT_EQ(video.width, 48U);
    EXPECT_EQ(video.height, 36U);
    EXPECT_EQ(video.rate, 25U * video.scale);
    EXPECT_EQ(video.length, 3U);
    EXPECT_EQ(video.keyFrames, 3U);
    EXPECT_TRUE(video.frames == expected);

    // The next one begins to count anew and replaces the file; going away with an open recording finishes it.
    ASSERT_TRUE(frame.AVIStart(Path("a.avi"), UNCOMPRESSED));
    EXPECT_EQ(frame.AddAviFrame(), 1);
    ASSERT_TRUE(frame.AVIStart(Path("b.avi"), 0));
    EXPECT_EQ(Video(Path("a.avi")).width, 200U);
    {
        const RenderFrame copy(frame);
        EXPECT_TRUE(frame.AVIStop());
    }
    EXPECT_EQ(Video(Path("b.avi")).frames.size(), 0U);
}

TEST_F(RecordingGLTest, RotateTurnsByEqualStepsBackToTheStart) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    Stage stage;
    const View start = stage.view;
    const auto before = stage.Expected(120, 120);
    stage.frame.Render();
    ASSERT_TRUE(stage.frame.AVIRotate(Path("turn.avi"), 120, 120, {0, 0, 3}, 36));
    EXPECT_FALSE(stage.frame.AVIIsHighQuality());
    EXPECT_THAT(Library::s_jobFast, ElementsAre(&stage.frame)) << "the window still shows the last recorded picture";
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(stage.view.GetModelviewMatrix()[i], start.GetModelviewMatrix()[i], 1e-6);
    }
    const Video video(Path("turn.avi"));
    ASSERT_EQ(video.frames.size(), 36U);
    for (int i = 0; i < 36; ++i) {
        const double angle = DirectionOfSquare(video.frames[static_cast<std::size_t>(i)], 120, 120);
        EXPECT_NEAR(std::remainder(angle - 10.0 * (i + 1), 360.0), 0.0, 1.0) << "frame " << i;
    }
    EXPECT_TRUE(video.frames.back() == before);
    stage.frame.AVIStop();
}

TEST_F(RecordingGLTest, AnimateLeavesTheFrameToTheCallback) {
    Stage stage;
    struct Host {
        Stage& stage;
        std::vector<unsigned int> numbers;
        static void Step(void* user, unsigned int frame, unsigned int frames) {
            auto& host = *static_cast<Host*>(user);
            host.numbers.push_back(frame);
            EXPECT_EQ(frames, 4U);
            EXPECT_TRUE(host.stage.frame.AVIIsHighQuality());
            host.stage.frame.Render();
            EXPECT_THAT(Library::s_jobFast, IsEmpty());
            EXPECT_THAT(Library::s_jobQuality, IsEmpty());
            EXPECT_FALSE(host.stage.frame.AVIRotate("other.avi", 64, 64, {0, 0, 1}, 2)) << "one at a time";
            host.stage.view.TranslateWorld({-0.1F, 0, 0});
        }
    } host{stage, {}};
    EXPECT_FALSE(stage.frame.AVIAnimate(Path("a.avi"), 64, 64, 4, nullptr, &host));
    EXPECT_EQ(Files(), 0U);
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(stage.frame.AVIAnimate(Path("a.avi"), 64, 64, 4, &Host::Step, &host));
        EXPECT_THAT(host.numbers, IsEmpty());
        return;
    }
    Library::s_jobQuality.push_back(&stage.frame);
    EXPECT_TRUE(stage.frame.AVIAnimate(Path("a.avi"), 64, 64, 4, &Host::Step, &host));
    EXPECT_THAT(host.numbers, ElementsAre(0, 1, 2, 3));
    const Video video(Path("a.avi"));
    ASSERT_EQ(video.frames.size(), 4U);
    EXPECT_TRUE(video.frames.back() == stage.Expected(64, 64));
    EXPECT_FALSE(video.frames.front() == video.frames.back());
}

TEST_F(RecordingGLTest, InterruptedPassesAreDrawnAgain) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    Stage stage;
    FrameFixture other(16, 16);
    stage.MakeHeavy();
    const auto expected = stage.Expected(48, 36);
    ASSERT_TRUE(stage.frame.AVIStart(Path("a.avi"), 0));
    for (RenderFrame* asking : {&stage.frame, &other.frame}) {
        DuringPass request([&] {
            asking->Render();
            EXPECT_EQ(stage.frame.AddAviFrame(), asking == &stage.frame ? 0 : 1) << "not from inside a pass";
            EXPECT_FALSE(stage.frame.AVIRotate(Path("b.avi"), 64, 64, {0, 0, 1}, 2));
        });
        EXPECT_EQ(stage.frame.AddAviFrame(), asking == &stage.frame ? 1 : 2);
        EXPECT_GT(request.looks, 1);
        EXPECT_THAT(Library::s_jobFast, IsEmpty()) << "was served meanwhile";
    }
    ASSERT_TRUE(stage.frame.AVIStop());
    EXPECT_TRUE(Video(Path("a.avi")).frames == std::vector(2, expected));

    Library::s_jobQuality.clear();
    {
        DuringPass request([&] {
            stage.frame.Render(); // does not count: the frame draws itself
            other.frame.Render();
        });
        ASSERT_TRUE(stage.frame.AVIRotate(Path("b.avi"), 48, 36, {0, 0, 1}, 3));
    }
    EXPECT_THAT(Library::s_jobQuality, ElementsAre(&other.frame)) << "its fast pass was drawn, this one's was not";
    const Video video(Path("b.avi"));
    ASSERT_EQ(video.frames.size(), 3U);
    EXPECT_TRUE(video.frames.back() == expected);
}

TEST_F(RecordingGLTest, TheHostMayEndItFromInsideAPass) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    const std::array<std::function<void(RenderFrame&)>, 3> endings{
        [](RenderFrame& frame) { EXPECT_TRUE(frame.AVIStop()); },
        [](RenderFrame& frame) { frame.Release(); },
        [](RenderFrame& frame) { frame.AbortRendering(); },
    };
    for (const auto& end : endings) {
        Stage stage;
        stage.MakeHeavy();
        ASSERT_TRUE(stage.frame.AVIStart(Path("step.avi"), 0));
        {
            DuringPass pass([&] { end(stage.frame); });
            EXPECT_LE(stage.frame.AddAviFrame(), 1);
        }
        EXPECT_TRUE(stage.frame.AVIStop());
        EXPECT_LE(Video(Path("step.avi")).frames.size(), 1U);
        fs::remove(Path("step.avi"));

        Stage next;
        next.MakeHeavy();
        DuringPass pass([&] { end(next.frame); });
        EXPECT_FALSE(next.frame.AVIRotate(Path("turn.avi"), 64, 64, {0, 1, 0}, 5));
        EXPECT_EQ(fs::exists(Path("turn.avi")), &end == &endings.front()) << "stopped ones are kept";
        EXPECT_TRUE(next.frame.AVIStop());
        EXPECT_FALSE(next.frame.AVIIsHighQuality());
        fs::remove(Path("turn.avi"));
        EXPECT_EQ(Files(), 0U);
    }
}

TEST_F(RecordingGLTest, FailuresLeaveWhatWasThere) {
    Stage stage;
    RenderFrame& frame = stage.frame;
    std::ofstream(Path("kept.avi"), std::ios::binary) << "before";
    const std::string folder = m_folder.Path().string();
    for (const std::string& path : {Path("kept.avi"), Path("missing/a.avi"), folder, std::string()}) {
        EXPECT_FALSE(frame.AVIStart(path, NO_CODEC)) << path;
        EXPECT_FALSE(frame.AVIRotate(path, 64, 64, {0, 1, 0}, 3)) << path;
        EXPECT_EQ(frame.AddAviFrame(), 0);
    }
    for (const std::uint32_t codec : {UNCOMPRESSED, MOTION_JPEG}) {
        frame.AVISetCodec(codec);
        for (const std::string& path : {Path("missing/a.avi"), folder, std::string("/dev/full")}) {
            EXPECT_FALSE(frame.AVIRotate(path, 64, 64, {0, 1, 0}, 30)) << path;
        }
        for (const unsigned int size : {0U, 2U, 62U}) {
            EXPECT_FALSE(frame.AVIRotate(Path("kept.avi"), size, 64, {0, 1, 0}, 3));
            EXPECT_FALSE(frame.AVIRotate(Path("kept.avi"), 64, size, {0, 1, 0}, 3));
        }
        if (frame.AVIStart("/dev/full", 0)) {
            for (int i = 0; i < 40; ++i) {
                frame.AddAviFrame();
            }
            EXPECT_FALSE(frame.AVIStop());
        }
        EXPECT_TRUE(frame.AVIStop());
    }
    frame.SetScreenSize(3, 100);
    EXPECT_FALSE(frame.AVIStart(Path("small.avi"), UNCOMPRESSED));
    frame.SetView(nullptr);
    EXPECT_FALSE(frame.AVIRotate(Path("kept.avi"), 64, 64, {0, 1, 0}, 3));
    EXPECT_EQ(Video(Path("kept.avi")).bytes, "before");
    EXPECT_EQ(Files(), 1U);
}

TEST_F(RecordingGLTest, WithoutACodecTheHostIsAsked) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    Stage stage;
    RenderFrame& frame = stage.frame;
    struct Host {
        HWND window;
        int asked = 0;
        bool answer = false;
        static bool Choose(HWND window, AVICOMPRESSOPTIONS* options, void* user) {
            auto& host = *static_cast<Host*>(user);
            EXPECT_EQ(window, host.window);
            EXPECT_EQ(options->fccType, platform::VIDEO_STREAM);
            EXPECT_NE(options->fccHandler, 0U);
            options->fccHandler = UNCOMPRESSED;
            ++host.asked;
            return host.answer;
        }
    } host{stage.window};
    SetCodecChooser(&Host::Choose, &host);
    EXPECT_TRUE(frame.AVISetCodec(0));
    EXPECT_FALSE(frame.AVIStart(Path("a.avi"), 0)) << "cancelled";
    EXPECT_FALSE(frame.AVIRotate(Path("a.avi"), 64, 64, {0, 1, 0}, 2));
    EXPECT_EQ(Files(), 0U);
    EXPECT_EQ(host.asked, 2);
    host.answer = true;
    EXPECT_TRUE(frame.AVIRotate(Path("a.avi"), 64, 64, {0, 1, 0}, 2));
    EXPECT_TRUE(frame.AVIStart(Path("b.avi"), 0));
    EXPECT_TRUE(frame.AVIStop());
    EXPECT_EQ(host.asked, 3) << "the answer is kept";
    EXPECT_EQ(Video(Path("a.avi")).frames.size(), 2U);
}

TEST_F(RecordingGLTest, CodecListIsThatOfTheSystem) {
    const std::vector<ICINFO> codecs = Library::GetInstalledAVICodecs();
    ASSERT_FALSE(codecs.empty());
    for (const ICINFO& codec : codecs) {
        EXPECT_NE(codec.fccHandler, 0U);
        EXPECT_EQ(codec.fccType & 0xDFDFDFDFU, platform::VIDEO_CODEC & 0xDFDFDFDFU);
    }
}

// Without the blank at its end.
std::string Name(const std::string& code) {
    return code.substr(0, code.find(' '));
}

// For tests/recording/read_back.py, which lets other programs read what is written here. Of every kind there are a
// first and a last picture as bitmaps.
TEST_F(RecordingGLTest, WritesFilesForOtherReaders) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    const char* folder = std::getenv("QUORVEX_RECORDINGS");
    const std::string to = (folder != nullptr ? folder : m_folder.Path().string()) + "/";
    Stage stage;
    stage.view.RotateWorld({0, 0, 1, 0.3F});
    for (const char* code : {"DIB ", "MJPG", "HFYU", "H264", "FMP4"}) {
        const View start = stage.view;
        if (!stage.frame.AVISetCodec(FourCharacters(code[0], code[1], code[2], code[3])) ||
            !stage.frame.AVIRotate(to + Name(code) + ".avi", 160, 120, {0, 0, 1}, 36)) {
            continue;
        }
        ASSERT_TRUE(stage.frame.RenderToBitmap(to + "last.bmp", 160, 120));
        stage.view.RotateWorld({0, 0, 1, static_cast<float>(std::numbers::pi / 18)});
        ASSERT_TRUE(stage.frame.RenderToBitmap(to + "first.bmp", 160, 120));
        stage.view = start;
    }
}

} // namespace
} // namespace KOVA::Quorvex::test
