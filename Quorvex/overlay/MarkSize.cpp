#include <Quorvex/overlay/MarkSize.h>

#include <algorithm>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/RenderFrame.h>

namespace KOVA::Quorvex {

float MarkSize(const RenderFrame& frame, float pixels) {
    const bool antiAliased = Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER);
    const float drawn = antiAliased ? frame.GetAntiAliasing() : 1.0F; // for each that is shown
    return std::max(pixels * drawn * frame.GetPixelRatio(), 1.0F);
}

} // namespace KOVA::Quorvex
