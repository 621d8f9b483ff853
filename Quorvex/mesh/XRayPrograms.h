#pragma once

namespace KOVA::Quorvex {

// Builds the program of the X-ray display mode, or the one in which front and back faces change their roles. The caller
// owns the program object.
unsigned int BuildXRayProgram(bool inverseNormals);

} // namespace KOVA::Quorvex
