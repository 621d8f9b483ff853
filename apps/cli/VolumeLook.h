#pragma once

#include <optional>
#include <string>
#include <vector>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/volume/Volume.h>

#include "TransferFunction.h"

namespace KOVA::Quorvex::cli {

// How `quorvex render` is told to show volumes.
struct VolumeOptions {
    VolumeAttribute::RenderMode mode = VolumeAttribute::Shaded;
    std::string transferFile;              // empty: made from the histogram
    std::optional<IntensityWindow> window; // instead of either
    double samples = 2.0;
    std::vector<Vector4d> clipPlanes; // six at most, as are the slices
    std::vector<Vector4d> slices;
};

// Gives the volume's attribute what the options say. Throws Failure when the transfer function cannot be read or the
// driver does not have the mode.
void SetLook(const VolumeOptions& options, const Volume& volume);

} // namespace KOVA::Quorvex::cli
