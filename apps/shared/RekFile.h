#pragma once

#include <string>

#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/volume/Volume.h>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// By the ending of the name: .rek.
bool IsVolumeFile(const std::string& path);

// Reads a REK file, without bricks. Throws Failure with the reason when it cannot be read or holds no voxels, or
// was cancelled.
Volume ReadRek(const std::string& path, ReadProgress* progress = nullptr);

} // namespace KOVA::Quorvex::apps
