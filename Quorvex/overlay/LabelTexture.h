#pragma once

#include <vector>

#include <Quorvex/platform/Text.h>

// From a label's picture to the images of its texture. No GL here.

namespace KOVA::Quorvex {

// 4 bytes (RGBA) a pixel, bottom row first as OpenGL wants them.
struct LabelImage {
    int width, height;
    std::vector<unsigned char> rgba;
};

struct LabelTexture {
    LabelImage image;
    float sizeX, sizeY; // of the image in pixels of the picture, padding included
};

// White, opaque glyphs on a transparent background. Where textures of any size are not possible, the picture lies in
// the middle of an image whose width and height are powers of two.
LabelTexture MakeLabelTexture(const platform::LabelPicture& picture, bool anySize);

// The next smaller image: half the width and height, rounded down but at least 1. Its pixels are the means of what they
// cover, in each channel.
LabelImage HalfSize(const LabelImage& image);

} // namespace KOVA::Quorvex
