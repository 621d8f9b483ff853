#pragma once

#include <optional>

#include "CameraRig.h"

namespace KOVA::Quorvex {
class VolumeAttribute;
class VolumeData;
} // namespace KOVA::Quorvex

namespace KOVA::Quorvex::viewer {

// What someone means who points at a volume, as a multiple of the ray's direction: in the composed modes the depth at
// which half of the light is taken by what the transfer function shows there; in those of the largest and smallest
// intensity the voxel that is seen. Slices are opaque where they show something. What clip planes cut away is not
// there.
std::optional<double> MeetVolume(const VolumeData& data, const VolumeAttribute& attribute, const Ray& ray);

} // namespace KOVA::Quorvex::viewer
