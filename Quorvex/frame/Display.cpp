// Showing the picture that was drawn off screen in the window.

#include <algorithm>

#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/InterruptedPass.h>
#include <Quorvex/frame/PictureQuad.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

void RenderFrame::Display() {
    if (!Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER)) {
        if (platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext)) {
            DrawGL(m_screenWidth, m_screenHeight, false);
            platform::SwapWindowBuffers(m_deviceContext);
        }
    } else if (m_composedBuffer.BufferInit()) {
        DrawLastPicture();
    }
}

void RenderFrame::DrawLastPicture() const {
    CHECK_GL_ERROR();
    glViewport(0, 0, static_cast<GLsizei>(m_screenWidth), static_cast<GLsizei>(m_screenHeight));
    glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const Size size{m_composedBuffer.GetWidth(), m_composedBuffer.GetHeight()};
    const Share share = ShareOfWindow(size);
    DrawPicture(m_composedBuffer, share.x, share.y, size.width == m_screenWidth && size.height == m_screenHeight);
    glViewport(0, 0, static_cast<GLsizei>(size.width), static_cast<GLsizei>(size.height));
    CHECK_GL_ERROR();
}

// The picture keeps its proportions: it touches two opposite sides of the window.
RenderFrame::Share RenderFrame::ShareOfWindow(Size picture) const {
    const float x = static_cast<float>(picture.width) / static_cast<float>(m_screenWidth);
    const float y = static_cast<float>(picture.height) / static_cast<float>(m_screenHeight);
    const float largest = std::max({x, y, 0.0F});
    return {x / largest, y / largest};
}

void RenderFrame::Present() {
    const bool offScreen = Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER);
    RenderFrame* const busy = FindBusyFrame();
    if (busy == nullptr) {
        if (platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext)) {
            Display();
            if (offScreen) { // else it has been shown
                platform::SwapWindowBuffers(m_deviceContext);
            }
        }
        return;
    }
    if (!offScreen) {
        Render(); // the scene itself would have to be drawn in the middle of the other's
        return;
    }
    const InterruptedPass interrupted(busy->GetDeviceContext());
    if (platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext)) {
        Display();
        platform::SwapWindowBuffers(m_deviceContext);
    }
}

} // namespace KOVA::Quorvex
