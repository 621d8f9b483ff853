// The platform seam without a display server: off-screen windows and contexts.

#include <thread>

#include <GL/gl.h>

#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/WindowSystem.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

std::vector<LPARAM> s_sizes;
int s_destroyed = 0;

LRESULT NoteMessages(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SIZE) {
        s_sizes.push_back(lParam);
    }
    s_destroyed += message == WM_DESTROY ? 1 : 0;
    return platform::DefaultWindowProcedure(window, message, wParam, lParam);
}

Pixel Draw(const Pixel& color, int width, int height) {
    glViewport(0, 0, width, height);
    glClearColor(static_cast<float>(color.r) / 255.0F, static_cast<float>(color.g) / 255.0F,
                 static_cast<float>(color.b) / 255.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    return ReadWindow(width, height).At(width - 1, 0); // exists only when the surface is that large
}

class PlatformGLTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        s_sizes.clear();
        s_destroyed = 0;
        m_window = CreateOffscreenWindow(40, 30);
        m_deviceContext = platform::AcquireDeviceContext(m_window);
        platform::SetWindowProcedure(m_window, NoteMessages);
        ASSERT_TRUE(platform::SetPixelFormat(m_deviceContext, {}));
        ASSERT_TRUE(platform::MakeCurrent(m_deviceContext, Library::GetRenderContext()));
    }
    void TearDown() override {
        ReleaseWindow(m_window);
        platform::ReleaseDeviceContext(m_window, m_deviceContext);
        platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContext());
        GlTest::TearDown();
    }

    HWND m_window = nullptr;
    HDC m_deviceContext = nullptr;
};

TEST_F(PlatformGLTest, OffscreenSizes) {
    for (const auto& [width, height] : {std::pair(0, 10), {10, 0}, {-5, 5}, {4097, 10}, {10, 4097}}) {
        EXPECT_EQ(CreateOffscreenWindow(width, height), nullptr);
        EXPECT_FALSE(ResizeOffscreenWindow(m_window, width, height));
    }
    EXPECT_TRUE(s_sizes.empty());
    EXPECT_EQ(Draw(RED, 40, 30), RED);

    // The context that is current stays so, on the new size.
    for (const auto& [width, height] : {std::pair(4096, 2), {1, 4096}, {70, 50}}) {
        ASSERT_TRUE(ResizeOffscreenWindow(m_window, width, height));
        EXPECT_EQ(s_sizes.back(), height << 16 | width);
        EXPECT_EQ(Draw(GREEN, width, height), GREEN) << width << " x " << height;
    }
    EXPECT_TRUE(ResizeOffscreenWindow(m_window, 70, 50));
    EXPECT_EQ(s_sizes.size(), 3U) << "the size that it has is no news";
    unsigned int width = 0;
    unsigned int height = 0;
    ASSERT_TRUE(platform::GetClientSize(m_window, &width, &height));
    EXPECT_EQ(width, 70U);
    EXPECT_EQ(height, 50U);
}

TEST_F(PlatformGLTest, ReleasedWindowStillServesForFreeing) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ReleaseWindow(m_window);
    EXPECT_EQ(s_destroyed, 1);
    ReleaseWindow(m_window); // once too often
    EXPECT_EQ(s_destroyed, 1);
    EXPECT_TRUE(glIsTexture(texture)) << "the context is still current";
    EXPECT_TRUE(platform::MakeCurrent(m_deviceContext, Library::GetRenderContext()));
    glDeleteTextures(1, &texture);
    EXPECT_FALSE(ResizeOffscreenWindow(m_window, 50, 50));
    EXPECT_FALSE(platform::SetPixelFormat(m_deviceContext, {}));
    EXPECT_EQ(platform::AcquireDeviceContext(m_window), nullptr);
}

TEST_F(PlatformGLTest, ContextsShareAndAreRefusedOnceDeleted) {
    const HGLRC alone = platform::CreateContext(m_deviceContext, nullptr);
    const HGLRC sharing = platform::CreateContext(m_deviceContext, Library::GetRenderContext());
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASSERT_TRUE(platform::MakeCurrent(m_deviceContext, alone));
    EXPECT_FALSE(glIsTexture(texture));
    ASSERT_TRUE(platform::MakeCurrent(m_deviceContext, sharing));
    EXPECT_TRUE(glIsTexture(texture));
    GLint bits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &bits);
    EXPECT_EQ(bits, 24);
    glGetIntegerv(GL_STENCIL_BITS, &bits);
    EXPECT_EQ(bits, 8);
    glDeleteTextures(1, &texture);

    platform::DeleteContext(sharing); // the current one
    platform::DeleteContext(sharing);
    platform::DeleteContext(alone);
    EXPECT_FALSE(platform::MakeCurrent(m_deviceContext, sharing));
    EXPECT_TRUE(platform::MakeCurrent(m_deviceContext, Library::GetRenderContext()));
}

// As a host does that loads on a thread of its own.
TEST_F(PlatformGLTest, SecondContextWorksOnAnotherThread) {
    GLuint texture = 0;
    const unsigned char gray = 77;
    std::thread([&] {
        ASSERT_TRUE(MakeContextCurrent(nullptr, Library::GetRenderContextMultiThread()));
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, 1, 1, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, &gray);
        glFinish();
        EXPECT_TRUE(MakeContextCurrent(nullptr, nullptr));
    }).join();
    unsigned char read = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, &read);
    EXPECT_EQ(read, gray);
    glDeleteTextures(1, &texture);
    EXPECT_EQ(Draw(RED, 40, 30), RED) << "this thread's context stays current";
}

} // namespace
} // namespace KOVA::Quorvex::test
