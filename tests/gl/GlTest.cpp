#include "GlTest.h"

#include <cstdlib>
#include <ostream>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex::test {

void PrintTo(const Pixel& pixel, std::ostream* stream) {
    *stream << '(' << pixel.r << ", " << pixel.g << ", " << pixel.b << ')';
}

bool Near(const Pixel& a, const Pixel& b, int tolerance) {
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance && std::abs(a.b - b.b) <= tolerance;
}

Picture ReadWindow(int width, int height) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    glFinish();
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    Picture picture{width, height, {}};
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const unsigned char* p =
                bytes.data() +
                (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 4;
            picture.pixels.push_back({p[0], p[1], p[2]});
        }
    }
    return picture;
}

Mesh MakeRectangle(float left, float bottom, float right, float top, float z, const ColorRGBA& color) {
    auto* const data = new MeshData(6, GL_TRIANGLES);
    data->CreateVertexArray(nullptr);
    const Vector3f corners[] = {{left, bottom, z}, {right, bottom, z}, {right, top, z},
                                {left, bottom, z}, {right, top, z},    {left, top, z}};
    for (unsigned int i = 0; i < 6; ++i) {
        data->SetVertex(i, corners[i]);
    }
    data->UpdateMetrics();
    Mesh mesh(*data);
    mesh.GetAttribute().SetColor(color);
    return mesh;
}

HWND GlTest::MainWindow() {
    static HWND const s_window = [] {
        HWND window = CreateOffscreenWindow(64, 64);
        if (!Library::Init(window)) {
            return HWND{};
        }
        if (std::getenv("QUORVEX_TEST_WITHOUT_FRAME_BUFFERS") != nullptr) {
            FrameBuffer::Release();
            Library::s_uiQXExtensions &= ~static_cast<unsigned int>(CAPABILITY_FRAME_BUFFER);
        }
        return window;
    }();
    return s_window;
}

void GlTest::SetUp() {
    ASSERT_NE(MainWindow(), nullptr) << "the library cannot be initialised on an off-screen window";
    Library::s_jobFast.clear();
    Library::s_jobQuality.clear();
}

void GlTest::TearDown() {
    SetMessagePump(nullptr, nullptr);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(Library::s_vRenderFrames.empty());
}

FrameFixture::FrameFixture(int w, int h) : width(w), height(h), window(CreateOffscreenWindow(w, h)) {
    view.SetProjectionOrthogonalRH(-2, 2, -2, 2, 1, 9);
    view.SetModelviewViewer({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(frame.Init(window, &view));
    frame.SetBackgroundColor(ColorRGBA(0, 0, 0));
    frame.SetLight({0, 0, 1});
}

FrameFixture::~FrameFixture() {
    frame.Release();
    ReleaseWindow(window);
}

Picture FrameFixture::Draw(bool quality) {
    EXPECT_TRUE(frame.Render(quality, static_cast<unsigned int>(width), static_cast<unsigned int>(height)));
    return Shown();
}

Picture FrameFixture::Shown() const {
    EXPECT_TRUE(platform::MakeCurrent(frame.GetDeviceContext(), Library::GetRenderContext()));
    return ReadWindow(width, height);
}

} // namespace KOVA::Quorvex::test
