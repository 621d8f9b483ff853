// Files opened and closed, windows resized and split, again and again: nothing may be left behind.

#include <fstream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <viewer/MeshPart.h>

#include "ViewerHost.h"

// After Qt: its macros take names from everyone.
#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace KOVA::Quorvex::viewer {

namespace {

// Objects of the driver that exist. Their names are counted upwards from 1 and hardly ever used again.
struct Objects {
    int textures = 0;
    int buffers = 0;
    int frameBuffers = 0;
};

Objects CountObjects() {
    constexpr GLuint names = 20000;
    const auto isBuffer = reinterpret_cast<PFNGLISBUFFERPROC>(eglGetProcAddress("glIsBuffer"));
    const auto isFrameBuffer = reinterpret_cast<PFNGLISFRAMEBUFFERPROC>(eglGetProcAddress("glIsFramebuffer"));
    Objects objects;
    for (GLuint name = 1; name < names; ++name) {
        objects.textures += glIsTexture(name);
        objects.buffers += isBuffer(name);
        objects.frameBuffers += isFrameBuffer(name);
    }
    return objects;
}

[[maybe_unused]] long ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmRSS:") {
            [[maybe_unused]] long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

TEST(EnduranceTest, HundredOpenCloseCyclesLeaveNothingBehind) {
    ViewerHost host;
    FrameGrid& frames = host.Window().GetFrames();
    std::mt19937 random(8);
    const auto between = [&random](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    Objects warm;
    [[maybe_unused]] long kilobytes = 0;
    for (int cycle = 0; cycle < 100; ++cycle) {
        host.Window().resize(between(500, 1100), between(400, 800));
        frames.SetCount(cycle % 3 == 0 ? 4 : cycle % 3);
        host.Window().Open(cycle % 2 == 0 ? QStringList{c_flange} : QStringList{c_casting, c_flange});
        // Often the next thing happens in the middle of a pass.
        const std::size_t wanted = cycle % 2 == 0 ? 1 : 2;
        ASSERT_TRUE(ViewerHost::WaitUntil([&] { return host.Window().GetScene().GetParts().size() == wanted; }));
        ViewerHost::WaitUntil([] { return false; }, between(0, 60));
        frames.ChangeCamera([&](CameraRig& rig) { rig.Turn(10, 10, between(0, 50), between(0, 50)); });
        ViewerHost::WaitUntil([] { return false; }, between(0, 60));
        host.Window().CloseAll();
        ASSERT_TRUE(ViewerHost::WaitUntil([&] { return host.Window().GetScene().GetParts().empty(); }));
        if (cycle % 30 == 9) { // with one frame, everything drawn
            frames.SetCount(1);
            host.Window().resize(800, 600);
            ASSERT_TRUE(host.Settle());
            const Objects objects = CountObjects();
            warm = cycle == 9 ? objects : warm;
            EXPECT_LE(objects.textures, warm.textures) << cycle;
            EXPECT_LE(objects.buffers, warm.buffers) << cycle;
            EXPECT_LE(objects.frameBuffers, warm.frameBuffers) << cycle;
            if (cycle == 39) {
                kilobytes = ResidentKilobytes();
            }
        }
    }
    ASSERT_TRUE(host.Settle());
    // The sample's voxels alone would be 50 MB by now, its textures more. Sanitizers keep what is freed for a while,
    // and look for leaks themselves.
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(ResidentKilobytes() - kilobytes, 12'000);
#endif
    ASSERT_TRUE(host.Open({c_flange}));
    EXPECT_GT(ViewerHost::CountForeground(ViewerHost::Picture(host.Frame())), 2000);
    EXPECT_EQ(ViewerHost::GlErrors(), 0);
}

} // namespace

} // namespace KOVA::Quorvex::viewer
