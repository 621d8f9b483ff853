#pragma once

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex::test {

using Library = ::KOVA::Quorvex::Quorvex;

struct Pixel {
    int r, g, b;
    bool operator==(const Pixel&) const = default;
};
void PrintTo(const Pixel& pixel, std::ostream* stream);

// True when no channel differs by more than tolerance.
bool Near(const Pixel& a, const Pixel& b, int tolerance);

// A picture with its origin at the top left.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels;

    const Pixel& At(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    }
    template <class Predicate> int Count(Predicate predicate) const {
        int count = 0;
        for (const Pixel& pixel : pixels) {
            count += predicate(pixel) ? 1 : 0;
        }
        return count;
    }
    int Count(const Pixel& color) const {
        return Count([&color](const Pixel& pixel) { return pixel == color; });
    }
};

constexpr Pixel BLACK{0, 0, 0};
constexpr Pixel WHITE{255, 255, 255};
constexpr Pixel RED{255, 0, 0};
constexpr Pixel GREEN{0, 255, 0};
constexpr Pixel BLUE{0, 0, 255};

// What the window shows, read from its back buffer; off-screen windows keep it after a swap.
Picture ReadWindow(int width, int height);

// A mesh without normals, so that its colour reaches the picture unlit: two counter-clockwise triangles in a plane of
// constant z.
Mesh MakeRectangle(float left, float bottom, float right, float top, float z, const ColorRGBA& color);

// The library, initialised once for the process on an off-screen window.
class GlTest : public testing::Test {
protected:
    static HWND MainWindow();
    static bool Has(unsigned int capability) { return Library::CheckQXExtension(capability); }

    void SetUp() override;
    void TearDown() override;
};

// An off-screen window with a frame on it, looking right-handed along -z from (0, 0, 5), orthogonal: the window's width
// spans x = -2..2. The background is black, the light comes from the viewer.
class FrameFixture {
public:
    FrameFixture(int width, int height);
    FrameFixture(const FrameFixture&) = delete;
    FrameFixture& operator=(const FrameFixture&) = delete;
    ~FrameFixture();

    Picture Draw(bool quality = true); // a pass, and what the window shows then
    Picture Shown() const;             // what the window shows now

    int width, height;
    HWND window;
    View view;
    RenderFrame frame;
};

// Runs an action of the host once, the first time that a pass lets input through.
class DuringPass {
public:
    explicit DuringPass(std::function<void()> action) : m_action(std::move(action)) { SetMessagePump(Pump, this); }
    DuringPass(const DuringPass&) = delete;
    DuringPass& operator=(const DuringPass&) = delete;
    ~DuringPass() { SetMessagePump(nullptr, nullptr); }
    int looks = 0;

private:
    static bool Pump(void* user) {
        auto* const self = static_cast<DuringPass*>(user);
        if (++self->looks > 1) {
            return false;
        }
        self->m_action();
        return true;
    }
    std::function<void()> m_action;
};

} // namespace KOVA::Quorvex::test
