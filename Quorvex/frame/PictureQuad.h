#pragma once

namespace KOVA::Quorvex {

class FrameBuffer;

// Loads matrices under which vertex coordinates are normalised device coordinates, at depth 0.
void LoadNormalizedDeviceMatrices();

// Draws the picture that is in a frame buffer over the middle of the viewport: x and y are the shares of its width and
// height that it takes. pixelForPixel says that nothing has to be filtered. Replaces the matrices; leaves the depth
// test on, and lighting and texturing off. A current program, the colour mask and the stipple are heeded.
void DrawPicture(const FrameBuffer& picture, float x, float y, bool pixelForPixel);

} // namespace KOVA::Quorvex
