// Pictures to keep: a quality pass of any size, read back.

#include <algorithm>

#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/core/OutputFile.h>
#include <Quorvex/frame/Bitmap.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/frame/Resample.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Memory.h>

namespace KOVA::Quorvex {

namespace {

// Lowers the anti-aliasing factor for the time of a capture so that neither side of the picture meets the limit of the
// internal size: if only one did, the proportions would be lost when the picture is brought to its size.
class FittedAntiAliasing {
public:
    FittedAntiAliasing(float& antiAliasing, unsigned int width, unsigned int height)
        : m_antiAliasing(antiAliasing), m_original(antiAliasing) {
        antiAliasing =
            std::min(antiAliasing, static_cast<float>(MAX_PASS_SIZE) / static_cast<float>(std::max(width, height)));
    }
    FittedAntiAliasing(const FittedAntiAliasing&) = delete;
    FittedAntiAliasing& operator=(const FittedAntiAliasing&) = delete;
    ~FittedAntiAliasing() { m_antiAliasing = m_original; }

private:
    float& m_antiAliasing;
    float m_original;
};

} // namespace

bool RenderFrame::RenderToBitmap(std::string path, unsigned int width, unsigned int height) {
    if (width % 4 != 0) {
        return false;
    }
    const std::unique_ptr<unsigned char[]> picture = CapturePicture(width, height);
    if (picture == nullptr) {
        return false;
    }
    OutputFile file;
    return file.Open(path.c_str()) &&
           EncodeBitmap(picture.get(), width, height,
                        [&file](const void* data, std::size_t bytes) { return file.Write(data, bytes); }) &&
           file.Commit();
}

bool RenderFrame::RenderToPixels(std::vector<unsigned char>& pixels, unsigned int width, unsigned int height) {
    const std::unique_ptr<unsigned char[]> picture = CapturePicture(width, height);
    if (picture == nullptr) {
        return false;
    }
    pixels.resize(std::size_t{width} * height * 3);
    unsigned char* out = pixels.data();
    for (unsigned int row = height; row-- > 0;) {
        const unsigned char* in = picture.get() + std::size_t{row} * width * 4;
        for (unsigned int x = 0; x < width; ++x, in += 4, out += 3) {
            std::copy_n(in, 3, out);
        }
    }
    return true;
}

std::unique_ptr<unsigned char[]> RenderFrame::CapturePicture(unsigned int width, unsigned int height) {
    if (m_view == nullptr || width == 0 || height == 0 || !Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER)) {
        return nullptr;
    }
    if (!DrawCapture({width, height}, true)) {
        Render(); // interrupted by something that wants to be seen
        return nullptr;
    }
    return ReadComposedPicture(width, height);
}

bool RenderFrame::DrawCapture(Size size, bool show) {
    const FittedAntiAliasing fitted(m_antiAliasing, size.width, size.height);
    if (show) {
        return Render(true, size.width, size.height);
    }
    return FindBusyFrame() == nullptr && platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext) &&
           DrawGL(size.width, size.height, true);
}

std::unique_ptr<unsigned char[]> RenderFrame::ReadComposedPicture(unsigned int width, unsigned int height) const {
    if (!m_composedBuffer.BufferInit()) {
        return nullptr;
    }
    const unsigned int sourceWidth = m_composedBuffer.GetWidth();
    const unsigned int sourceHeight = m_composedBuffer.GetHeight();
    std::unique_ptr<unsigned char[]> picture(new unsigned char[std::size_t{sourceWidth} * sourceHeight * 4]);
    platform::AdviseLargeBlock(picture.get(), std::size_t{sourceWidth} * sourceHeight * 4);
    glFinish(); // a read-back right after drawing may still see the picture before
    m_composedBuffer.Begin();
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, picture.get());
    glBindTexture(GL_TEXTURE_2D, 0);
    if (sourceWidth == width && sourceHeight == height) {
        return picture;
    }
    const std::vector<unsigned char> resampled = Resample(picture.get(), sourceWidth, sourceHeight, 4, width, height);
    if (resampled.empty()) { // larger than pictures can be
        return nullptr;
    }
    picture.reset(new unsigned char[resampled.size()]);
    std::copy(resampled.begin(), resampled.end(), picture.get());
    return picture;
}

} // namespace KOVA::Quorvex
