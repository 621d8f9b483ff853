#pragma once

#include <QString>

#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

// Ways to look at a volume, made for what its histogram says.
struct TransferPreset {
    const char* name; // to be translated
    const char* tip;
    VolumeAttribute::RenderMode mode;
    TransferCurve (*make)(const VolumePart& volume);
};

const std::vector<TransferPreset>& TransferPresets();

} // namespace KOVA::Quorvex::viewer
