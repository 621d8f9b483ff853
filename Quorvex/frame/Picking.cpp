// Which mesh is under a pixel: the scene is drawn in selection mode through a projection that leaves that pixel alone.

#include <cassert>
#include <cmath>
#include <memory>

#include <Quorvex/core/Facade.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/InterruptedPass.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/VolumeRenderer.h>

namespace KOVA::Quorvex {

namespace {

constexpr GLsizei SELECTION_SIZE = 0x10000; // 32-bit values: 16384 meshes under one pixel

// One direction of the picture: where the pixel's middle is (-1..1 inside the picture) and how many pixels the picture
// is wide. The picture may leave room free at both sides of the window.
struct PixelPlace {
    double position;
    double pixels;

    PixelPlace(unsigned int pixel, unsigned int windowExtent, double covered)
        : position(((2.0 * pixel + 1.0) / windowExtent - 1.0) / covered), pixels(windowExtent * covered) {}

    bool IsInPicture() const { return std::abs(position) <= 1.0; }
};

// The projection that enlarges one pixel of the picture to all of the viewport.
void EnlargePixel(double* projection, const PixelPlace& x, const PixelPlace& y) {
    for (double* column = projection; column != projection + 16; column += 4) {
        column[0] = x.pixels * (column[0] - x.position * column[3]);
        column[1] = y.pixels * (column[1] - y.position * column[3]);
    }
}

} // namespace

Mesh* RenderFrame::HitTest(unsigned int x, unsigned int y) {
    assert(IsGlThread());
    if (m_view == nullptr || x >= m_screenWidth || y >= m_screenHeight ||
        !platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext)) {
        return nullptr;
    }
    const RenderFrame* const drawing = FindBusyFrame();
    const InterruptedPass interrupted(drawing != nullptr ? drawing->GetDeviceContext() : m_deviceContext);
    if (drawing != nullptr) {
        VolumeRenderer::CleanUp(); // its clip planes, above all
    }
    if (RenderFrame* const busy = Quorvex::GetBusyFrame()) {
        busy->Render(); // its pass stops at the next report of progress and is made anew later
    }

    const Size picture = ComposedSize(m_stereoMode, {m_screenWidth, m_screenHeight});
    const Share covered = ShareOfWindow(picture);
    const PixelPlace column(x, m_screenWidth, covered.x);
    const PixelPlace row(m_screenHeight - 1 - y, m_screenHeight, covered.y);
    if (!column.IsInPicture() || !row.IsInPicture()) {
        return nullptr;
    }
    double projection[16];
    CopyProjection(picture, projection);
    EnlargePixel(projection, column, row);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(m_view->GetModelviewMatrix());
    glViewport(0, 0, static_cast<GLsizei>(m_screenWidth), static_cast<GLsizei>(m_screenHeight));

    const std::unique_ptr<unsigned int[]> hits(new unsigned int[SELECTION_SIZE]);
    glSelectBuffer(SELECTION_SIZE, hits.get());
    glRenderMode(GL_SELECT);
    RenderWithNames(*this);
    const GLint count = glRenderMode(GL_RENDER); // negative when they were too many
    return count != 0 ? RenderWithNamesGetResult(count, hits.get()) : nullptr;
}

} // namespace KOVA::Quorvex
