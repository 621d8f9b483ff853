#pragma once

#include <array>
#include <cstddef>

#include <Quorvex/core/Colors.h>

#include "Camera.h"
#include "Programs.h"

namespace KOVA::Quorvex {
class MeshData;
class VolumeData;
} // namespace KOVA::Quorvex

// Bringing meshes to a size and place in which OpenGL's numbers are of the same magnitude for a crystal in micrometres
// and for a plant far away from the origin of its coordinates.

namespace KOVA::Quorvex::apps {

// The box of all vertices; not finite when one of them is not.
Box BoxOf(const MeshData& data);

// Moves the centre to the origin and multiplies by the factor, in double precision; measures the data anew.
void CenterAndScale(MeshData& data, const std::array<double, 3>& center, double factor);

// The coordinates of a scene: a point p of a file is shown at (p - middle) / unit.
struct SceneUnit {
    double unit;
    std::array<double, 3> middle;
};

// For meshes alone: the box's corners come to distance 1 from the origin.
SceneUnit UnitOf(const Box& box);

// Volumes have their place: centred, the longest axis from -1 to 1. The coordinates of meshes beside them are taken for
// voxels of this one, the centre of voxel (0, 0, 0) at the origin.
SceneUnit UnitOf(const VolumeData& data);

// A colour for the part of that number, from 0, told apart from its neighbours, also on grey prints. The first is that
// of bare metal.
ColorRGBA PartColor(std::size_t number);

} // namespace KOVA::Quorvex::apps
