#pragma once

#include <array>
#include <string>
#include <vector>

#include <Quorvex/core/Colors.h>
#include <Quorvex/volume/VolumeAttribute.h>

#include "Programs.h"
#include "VolumeSummary.h"

// Colour and opacity for the 256 intensities of a volume.

namespace KOVA::Quorvex::apps {

using TransferTable = std::array<ColorRGBA, VolumeAttribute::transferEntries>;

// The intensities low to high, 0..255.
struct IntensityWindow {
    int low;
    int high;
};

// What makes a scan of which nothing else is known readable in this mode: air is transparent. Shaded, the surface of
// the material is opaque; unshaded, one looks into it; the largest and smallest intensities are shown as grey levels.
// longestAxis: voxels along the volume's longest side.
TransferTable DefaultTransferFunction(const VolumeSummary& summary, VolumeAttribute::RenderMode mode,
                                      std::size_t longestAxis);

// The same for someone who knows which intensities to look at: nothing else is seen.
TransferTable WindowTransferFunction(const IntensityWindow& window, VolumeAttribute::RenderMode mode,
                                     std::size_t longestAxis);

// Opaque grey levels for a cut through the volume; nothing where there is air, so that it does not hide what is behind.
TransferTable SliceTransferFunction(const VolumeSummary& summary);

// A text file of 256 lines "r g b a", each 0..1, for the intensities from 0 up. Throws Failure with the reason when it
// is anything else.
TransferTable ReadTransferFunction(const std::string& path);

} // namespace KOVA::Quorvex::apps
