#include <Quorvex/frame/InterruptedPass.h>

#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/frame/FrameBuffer.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

namespace {

constexpr GLenum s_matrixModes[] = {GL_PROJECTION, GL_MODELVIEW};

} // namespace

InterruptedPass::InterruptedPass(HDC deviceContext)
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

InterruptedPass::~InterruptedPass() {
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

} // namespace KOVA::Quorvex
