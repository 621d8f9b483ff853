#pragma once

#include <cstddef>

namespace KOVA::Quorvex {

// Pixels of red, green, blue and alpha bytes, as OpenGL gives them, as blue, green and red ones, as bitmaps and videos
// hold them.
inline void ConvertToBgr(const unsigned char* rgba, std::size_t pixels, unsigned char* bgr) {
    for (std::size_t i = 0; i < pixels; ++i) {
        bgr[i * 3] = rgba[i * 4 + 2];
        bgr[i * 3 + 1] = rgba[i * 4 + 1];
        bgr[i * 3 + 2] = rgba[i * 4];
    }
}

} // namespace KOVA::Quorvex
