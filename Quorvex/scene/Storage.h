#pragma once

namespace KOVA::Quorvex {

// Where data is kept for drawing.
enum STORAGE : int {
    STORAGE_VBO = 0 // as it stands in memory and, when the driver can, in GL objects (buffers, textures) as well
};

} // namespace KOVA::Quorvex
