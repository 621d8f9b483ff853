// Frame buffers and pictures written to files.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include <Quorvex/core/OpenGL.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class CaptureGLTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        m_path = testing::TempDir() + "quorvex-capture-" + std::to_string(::getpid()) + ".bmp";
    }
    void TearDown() override {
        std::filesystem::remove(m_path);
        GlTest::TearDown();
    }

    std::vector<unsigned char> ReadFile() const {
        std::ifstream file(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string m_path;
};

class FrameBufferGLTest : public GlTest {};

TEST_F(FrameBufferGLTest, KeepsItsBuffersWhileSizeAndKindStay) {
    FrameBuffer buffer;
    EXPECT_FALSE(buffer.BufferInit());
    buffer.SetInternalResolution(64, 32, false);
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(buffer.InitBuffer(64, 32, false));
        EXPECT_FALSE(buffer.BufferInit());
        return;
    }
    EXPECT_TRUE(buffer.SupportsStencil());
    const GLuint texture = buffer.GetTexture();
    EXPECT_NE(texture, 0U);
    buffer.SetInternalResolution(64, 32, false);
    EXPECT_EQ(buffer.GetTexture(), texture);

    // Float colours keep what lies outside of 0..1.
    buffer.SetInternalResolution(64, 32, true);
    buffer.BeginCapture();
    glClearColor(-2.5F, 7.0F, 0.1F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    float pixel[4];
    glReadPixels(3, 3, 1, 1, GL_RGBA, GL_FLOAT, pixel);
    buffer.EndCapture();
    EXPECT_FLOAT_EQ(pixel[0], -2.5F);
    EXPECT_FLOAT_EQ(pixel[1], 7.0F);
}

TEST_F(FrameBufferGLTest, NamesAreFreedOnceByTheLastSharer) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(FrameBuffer().InitBuffer(8, 8, false));
        return;
    }
    FrameBuffer first;
    ASSERT_TRUE(first.InitBuffer(16, 16, false));
    const GLuint texture = first.GetTexture();
    {
        FrameBuffer copy;
        copy = first;
        EXPECT_EQ(copy.GetTexture(), texture);
    }
    EXPECT_TRUE(glIsTexture(texture)) << "still used by the first";

    FrameBuffer copy(first);
    first.ReleaseBuffer();
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_TRUE(first.IsInit()) << "the names can still be asked for";

    // The driver hands the freed names out again; they belong to the new owner now.
    FrameBuffer next;
    ASSERT_TRUE(next.InitBuffer(16, 16, false));
    first.ReleaseBuffer();
    copy.ReleaseBuffer();
    first = FrameBuffer();
    copy = FrameBuffer();
    EXPECT_TRUE(glIsTexture(next.GetTexture()));
}

TEST_F(CaptureGLTest, WritesABitmapOfTheSizeAskedFor) {
    FrameFixture f(50, 50);
    f.frame.Add(MakeRectangle(-2, 0, 0, 2, 0, {1, 0.5F, 0})); // left upper quarter of a square
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(f.frame.RenderToBitmap(m_path, 800, 600));
        EXPECT_FALSE(std::filesystem::exists(m_path));
        return;
    }
    EXPECT_FALSE(f.frame.RenderToBitmap(m_path, 802, 600));
    EXPECT_FALSE(f.frame.RenderToBitmap(m_path, 0, 600));
    EXPECT_FALSE(std::filesystem::exists(m_path));
    f.frame.SetBackgroundColor(ColorRGBA(0, 0, 1));
    ASSERT_TRUE(f.frame.RenderToBitmap(m_path, 800, 600));
    const std::vector<unsigned char> file = ReadFile();
    ASSERT_EQ(file.size(), 1440054U);
    EXPECT_EQ(file[0], 'B');
    EXPECT_EQ(file[18] + 256 * file[19], 800);
    EXPECT_EQ(file[22] + 256 * file[23], 600);
    // Blue, green, red from the bottom up.
    const auto pixel = [&file](int x, int yFromBottom) {
        const unsigned char* p = file.data() + 54 + (yFromBottom * 800 + x) * 3;
        return Pixel{p[2], p[1], p[0]};
    };
    EXPECT_TRUE(Near(pixel(100, 500), {255, 128, 0}, 1)) << "left, top";
    EXPECT_EQ(pixel(700, 500), BLUE);
    EXPECT_EQ(pixel(100, 100), BLUE);
}

TEST_F(CaptureGLTest, SamePictureInMemoryFromTheTopWithAnyFactor) {
    FrameFixture f(30, 30);
    f.frame.Add(MakeRectangle(-2, 0, 0, 2, 0, {1, 0, 0}));
    std::vector<unsigned char> pixels(7, 42);
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(f.frame.RenderToPixels(pixels, 31, 31));
        EXPECT_EQ(pixels.size(), 7U);
        return;
    }
    for (const float factor : {1.0F, 2.0F, 3.0F, 0.5F}) {
        f.frame.SetAntiAliasing(factor);
        ASSERT_TRUE(f.frame.RenderToPixels(pixels, 31, 31));
        ASSERT_EQ(pixels.size(), 31U * 31U * 3U);
        EXPECT_EQ(pixels[0], 255) << factor << ": left, top";
        EXPECT_EQ(pixels[30 * 3], 0) << factor << ": right, top";
        EXPECT_EQ(pixels[30 * 31 * 3], 0) << factor << ": left, bottom";
    }
}

TEST_F(CaptureGLTest, LargerThanTheInternalLimitKeepsItsProportions) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        EXPECT_FALSE(Library::CheckQXExtension(CAPABILITY_FRAME_BUFFER));
        return;
    }
    FrameFixture f(30, 30);
    f.frame.SetAntiAliasing(2.0F);
    f.frame.Add(MakeRectangle(-0.05F, -0.05F, 0.05F, 0.05F, 0, {1, 1, 1}));
    std::vector<unsigned char> pixels;
    ASSERT_TRUE(f.frame.RenderToPixels(pixels, 6000, 300));
    ASSERT_EQ(pixels.size(), 6000U * 300U * 3U);
    // 1500 pixels a unit: a square of 150 in the middle.
    int columns = 0;
    int rows = 0;
    for (std::size_t x = 0; x < 6000; ++x) {
        columns += pixels[(150 * 6000 + x) * 3] > 127 ? 1 : 0;
    }
    for (std::size_t y = 0; y < 300; ++y) {
        rows += pixels[(y * 6000 + 3000) * 3] > 127 ? 1 : 0;
    }
    EXPECT_NEAR(columns, 150, 2);
    EXPECT_NEAR(rows, 150, 2);
    EXPECT_EQ(f.frame.GetAntiAliasing(), 2.0F);
}

TEST_F(CaptureGLTest, FailsWithoutLeavingAPartBehind) {
    FrameFixture f(16, 16);
    EXPECT_FALSE(f.frame.RenderToBitmap("/nonexistent-directory/picture.bmp", 16, 16));
    EXPECT_FALSE(f.frame.RenderToBitmap("/dev/full", 64, 64));
    f.frame.SetView(nullptr);
    EXPECT_FALSE(f.frame.RenderToBitmap(m_path, 16, 16)) << "nothing has been drawn";
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

} // namespace
} // namespace KOVA::Quorvex::test
