// Showing the picture that was drawn off screen in the window.

#include <algorithm>

#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/NormalizedDevice.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

namespace {

constexpr GLenum s_matrixModes[] = {GL_PROJECTION, GL_MODELVIEW};

// Keeps the state of a pass in which something else is drawn in between, and makes the window of that pass current
// again afterwards.
class InterruptedPass {
public:
    explicit InterruptedPass(HDC deviceContext)
        : m_deviceContext(deviceContext), m_frameBuffer(FrameBuffer::GetBoundName()), m_program(GetCurrentProgram()) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        for (const GLenum mode : s_matrixModes) {
            glMatrixMode(mode);
            glPushMatrix();
        }
        FrameBuffer::BindName(0);
        UseProgram(0);
        glDisable(GL_BLEND);
        glDisable(GL_SCISSOR_TEST);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glDepthMask(GL_TRUE);
    }
    InterruptedPass(const InterruptedPass&) = delete;
    InterruptedPass& operator=(const InterruptedPass&) = delete;
    ~InterruptedPass() {
        platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext);
        for (const GLenum mode : s_matrixModes) {
            glMatrixMode(mode);
            glPopMatrix();
        }
        glPopClientAttrib();
        glPopAttrib();
        FrameBuffer::BindName(m_frameBuffer);
        UseProgram(m_program);
    }

private:
    HDC m_deviceContext;
    unsigned int m_frameBuffer;
    unsigned int m_program;
};

} // namespace

void LoadNormalizedDeviceMatrices() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glTranslatef(0.0F, 0.0F, -1.0F);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0.0F, 0.0F, 1.0F);
}

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
    LoadNormalizedDeviceMatrices();
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    m_composedBuffer.Begin();

    // Pixel for pixel there is nothing to filter; without, and without depths, software drivers copy at twice the
    // speed.
    const bool sameSize =
        m_composedBuffer.GetWidth() == m_screenWidth && m_composedBuffer.GetHeight() == m_screenHeight;
    const GLint filter = sameSize ? GL_NEAREST : GL_LINEAR;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);

    // The picture keeps its proportions: it touches two opposite sides of the window.
    const float scaleX = static_cast<float>(m_composedBuffer.GetWidth()) / static_cast<float>(m_screenWidth);
    const float scaleY = static_cast<float>(m_composedBuffer.GetHeight()) / static_cast<float>(m_screenHeight);
    const float largest = std::max({scaleX, scaleY, 0.0F});
    const float x = scaleX / largest;
    const float y = scaleY / largest;
    glColor3f(1.0F, 1.0F, 1.0F);
    glBegin(GL_QUADS);
    glTexCoord2f(0.0F, 1.0F);
    glVertex2f(-x, y);
    glTexCoord2f(1.0F, 1.0F);
    glVertex2f(x, y);
    glTexCoord2f(1.0F, 0.0F);
    glVertex2f(x, -y);
    glTexCoord2f(0.0F, 0.0F);
    glVertex2f(-x, -y);
    glEnd();

    glBindTexture(GL_TEXTURE_2D, 0);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_DEPTH_TEST);
    glViewport(0, 0, static_cast<GLsizei>(m_composedBuffer.GetWidth()),
               static_cast<GLsizei>(m_composedBuffer.GetHeight()));
    CHECK_GL_ERROR();
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
