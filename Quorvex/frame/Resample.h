#pragma once

#include <vector>

namespace KOVA::Quorvex {

// The picture of sourceWidth x sourceHeight pixels, channels bytes each, in another size. Along an axis that gets
// shorter every new pixel is the average of the area that it covers (parts of pixels count by their share), along one
// that gets longer it is interpolated linearly between pixel centres, with the edges repeated. The arithmetic is exact
// and the result rounded once, halves upwards, so that the same size gives the same bytes.
//
// Sizes are 1 to 65535 pixels and channels are 1 to 4; empty for others.
std::vector<unsigned char> Resample(const unsigned char* source, unsigned int sourceWidth, unsigned int sourceHeight,
                                    unsigned int channels, unsigned int width, unsigned int height);

} // namespace KOVA::Quorvex
