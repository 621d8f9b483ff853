#pragma once

namespace KOVA::Quorvex {

class RenderFrame;

// The registered frame that is inside DrawGL now; null when none is. All frames draw with one context, so while one
// draws no other may.
RenderFrame* FindBusyFrame();

} // namespace KOVA::Quorvex
