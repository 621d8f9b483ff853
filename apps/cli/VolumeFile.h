#pragma once

#include <string>

#include <Quorvex/volume/Volume.h>

namespace KOVA::Quorvex::cli {

// By the ending of the name: .rek.
bool IsVolumeFile(const std::string& path);

// Reads a REK file, without bricks. What the library warns of goes to standard error as one line. Throws Failure with
// the reason when it cannot be read or holds no voxels.
Volume ReadVolume(const std::string& path);

} // namespace KOVA::Quorvex::cli
