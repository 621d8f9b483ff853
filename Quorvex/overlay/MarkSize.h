#pragma once

namespace KOVA::Quorvex {

class RenderFrame;

// The point size or line width with which a mark comes out `pixels` wide in the picture (times the frame's pixel
// ratio): with anti-aliasing several pixels are drawn for each of them. At least 1.
float MarkSize(const RenderFrame& frame, float pixels);

} // namespace KOVA::Quorvex
