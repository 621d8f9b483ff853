#include <Quorvex/frame/RenderFrame.h>

namespace KOVA::Quorvex {

bool RenderFrame::SetStereoMode(StereoMode mode) {
    if (mode != STEREO_NONE) {
        return false; // pictures for two eyes are not drawn yet
    }
    m_leftBuffer.ReleaseBuffer();
    m_rightBuffer.ReleaseBuffer();
    m_stereoMode = mode;
    return true;
}

} // namespace KOVA::Quorvex
