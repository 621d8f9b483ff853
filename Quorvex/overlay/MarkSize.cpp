#include <Quorvex/overlay/MarkSize.h>

#include <algorithm>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/RenderFrame.h>

namespace KOVA::Quorvex {

float MarkSize(const RenderFrame& frame, float pixels) {
    const bool antiAliased = Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER);
    return std::max(antiAliased ? pixels * frame.GetAntiAliasing() : pixels, 1.0F);
}

} // namespace KOVA::Quorvex
