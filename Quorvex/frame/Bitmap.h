#pragma once

#include <vector>

namespace KOVA::Quorvex {

// A bitmap file of 24 bits a pixel from width x height pixels of red, green, blue and alpha bytes, bottom row first as
// OpenGL gives them; the alpha is dropped. Rows of the file are padded to 4 bytes. Empty when there are no pixels, or
// when the file would be longer than its 32-bit fields can say.
std::vector<unsigned char> EncodeBitmap(const unsigned char* rgba, unsigned int width, unsigned int height);

} // namespace KOVA::Quorvex
