// Pictures for two eyes, each drawn into a buffer of its own, and how they come into one.

#include <array>

#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/PictureQuad.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex {

namespace {

using Stipple = std::array<GLubyte, 128>; // 32 rows of 32 bits, the bottom row first

struct Stipples {
    Stipple right;
    Stipple left;
};

bool HasRows(StereoMode mode) {
    return mode == STEREO_ROWS || mode == STEREO_ROWS_ALTERNATE;
}

Stipples StipplesOf(StereoMode mode) {
    Stipples stipples{};
    for (std::size_t i = 0; i < stipples.right.size(); ++i) {
        GLubyte bits = mode == STEREO_COLUMNS ? 0x55 : 0xAA;
        if (HasRows(mode)) {
            bits = i / 4 % 2 == 0 ? 0xFF : 0x00;
        }
        stipples.right[i] = bits;
        stipples.left[i] = static_cast<GLubyte>(~bits);
    }
    return stipples;
}

// Drivers turn the rows of a stipple round for windows but not for frame buffers, and some give it to the hardware only
// when its bits differ from the last ones: a pattern that was last used in a window would have its rows the wrong way
// round. Drawing nothing with the left eye's makes both of those that follow new.
void ForgetStipple(const Stipple& left) {
    glPolygonStipple(left.data());
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < 3; ++i) {
        glVertex2f(0.0F, 0.0F);
    }
    glEnd();
}

} // namespace

bool RenderFrame::SetStereoMode(StereoMode mode) {
    if (mode > STEREO_COLUMNS_SWAPPED) {
        return false;
    }
    if (mode != STEREO_NONE && !Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER)) {
        return false;
    }
    if (FindBusyFrame() == nullptr) { // a pass has the context already
        platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext);
    }
    FrameBuffer left;
    FrameBuffer right;
    if (mode != STEREO_NONE) {
        const Size internal = InternalSize({m_screenWidth, m_screenHeight});
        const Size eye = EyeSize(mode, internal);
        const unsigned int target = FrameBuffer::GetBoundName();
        const bool made = left.InitBuffer(eye.width, eye.height, HoldsVolumes()) &&
                          right.InitBuffer(eye.width, eye.height, HoldsVolumes());
        FrameBuffer::BindName(target);
        if (!made) {
            return false;
        }
    }
    // A pass that is under way has a share in the old ones.
    m_leftBuffer = left;
    m_rightBuffer = right;
    m_stereoMode = mode;
    return true;
}

RenderFrame::Size RenderFrame::EyeSize(StereoMode mode, Size internal) {
    if (mode == STEREO_ANAGLYPH) {
        return internal;
    }
    return HasRows(mode) ? Size{internal.width, (internal.height + 1) / 2}
                         : Size{(internal.width + 1) / 2, internal.height};
}

bool RenderFrame::DrawStereo(const Pass& pass) {
    const Size eye = EyeSize(pass.mode, pass.internal);
    m_rightBuffer.SetInternalResolution(eye.width, eye.height, HoldsVolumes());
    m_leftBuffer.SetInternalResolution(eye.width, eye.height, HoldsVolumes());
    // Shares: the host may change the mode while it is let in.
    FrameBuffer right = m_rightBuffer;
    FrameBuffer left = m_leftBuffer;
    const float effect = m_stereoEffect;
    if (!DrawEye(pass, right, effect) || !DrawEye(pass, left, -effect)) {
        return false;
    }
    m_composedBuffer.BeginCapture();
    BeginTarget(pass.composed, pass.picture);
    if (pass.mode == STEREO_ANAGLYPH) {
        ComposeAnaglyph(left, right);
    } else {
        ComposeInterleaved(pass.mode, left, right);
    }
    m_composedBuffer.EndCapture();
    return true;
}

bool RenderFrame::DrawEye(const Pass& pass, FrameBuffer& target, float eyeShift) {
    target.BeginCapture();
    BeginTarget({target.GetWidth(), target.GetHeight()}, pass.picture);
    DrawBackground();
    LoadCamera(pass.composed, static_cast<double>(eyeShift));
    DrawBackgroundUserView();
    const bool finished = ObjectTypes::Render(*this, pass.quality);
    target.EndCapture();
    return finished;
}

void RenderFrame::ComposeAnaglyph(const FrameBuffer& left, const FrameBuffer& right) {
    GrayScaleRendering_SwitchOn();
    glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_FALSE);
    DrawPicture(right, 1.0F, 1.0F, true);
    glColorMask(GL_FALSE, GL_TRUE, GL_TRUE, GL_TRUE);
    DrawPicture(left, 1.0F, 1.0F, true);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    GrayScaleRendering_SwitchOff();
}

void RenderFrame::ComposeInterleaved(StereoMode mode, const FrameBuffer& left, const FrameBuffer& right) {
    const Stipples stipples = StipplesOf(mode);
    glEnable(GL_POLYGON_STIPPLE);
    ForgetStipple(stipples.left);
    glPolygonStipple(stipples.right.data());
    DrawPicture(right, 1.0F, 1.0F, false);
    glPolygonStipple(stipples.left.data());
    DrawPicture(left, 1.0F, 1.0F, false);
    glDisable(GL_POLYGON_STIPPLE);
}

} // namespace KOVA::Quorvex
