#pragma once

#include <vector>

#include "GlTest.h"

namespace KOVA::Quorvex::test {

// A volume drawn as simply as it can be, one slice of one brick after the other and nothing left out but the bricks
// beyond the intensity window, in front of black: what all that the renderer saves must not change. Needs frame-buffer
// objects and volumes. Rows from the top, 3 bytes a pixel. light: towards the light, in world coordinates.
std::vector<unsigned char> DrawPlainSlices(VolumeData& data, const VolumeAttribute& attribute, const View& view,
                                           const Vector3f& light, unsigned int width, unsigned int height);

} // namespace KOVA::Quorvex::test
