#pragma once

#include <string>

#include <Quorvex/volume/Volume.h>

#include "RekFile.h"

namespace KOVA::Quorvex::cli {

// Reads a REK file, without bricks. What the library warns of goes to standard error as one line. Throws Failure with
// the reason when it cannot be read or holds no voxels.
Volume ReadVolume(const std::string& path);

} // namespace KOVA::Quorvex::cli
