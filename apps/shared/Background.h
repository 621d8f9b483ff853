#pragma once

#include <optional>

#include <Quorvex/core/Colors.h>
#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/volume/VolumeAttribute.h>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// The colours of the picture's upper and lower edge.
struct Background {
    ColorRGBA top;
    ColorRGBA bottom;
};

// Whether a mesh is drawn as lines or points.
bool ShowsLines(MeshAttribute::RenderMode mode);

// What meshes and volumes in these modes are seen best before; none for what there is none of.
Background SuitableBackground(std::optional<MeshAttribute::RenderMode> mesh,
                              std::optional<VolumeAttribute::RenderMode> volume);

} // namespace KOVA::Quorvex::apps
