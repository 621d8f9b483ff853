#pragma once

#include <cstddef>
#include <functional>

namespace KOVA::Quorvex {

// Encodes a bitmap file of 24 bits a pixel from width x height pixels of red, green, blue and alpha bytes, bottom row
// first as OpenGL gives them; the alpha is dropped. Rows of the file are padded to 4 bytes. The file is handed to sink
// in blocks of bounded size, in order, until sink answers false. False then, and before the first block when there are
// no pixels or the file would be longer than its 32-bit fields can say.
using BitmapSink = std::function<bool(const void* data, std::size_t bytes)>;
bool EncodeBitmap(const unsigned char* rgba, unsigned int width, unsigned int height, const BitmapSink& sink);

} // namespace KOVA::Quorvex
