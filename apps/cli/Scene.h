#pragma once

#include <array>
#include <string>
#include <vector>

#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/volume/Volume.h>

#include "Camera.h"
#include "Marks.h"

namespace KOVA::Quorvex::cli {

class ProgressBar;

// The models of one picture, read and brought to one size: centred on the origin with the corners of their common box
// at distance 1. So the numbers that OpenGL calculates with are of the same magnitude for a crystal in micrometres and
// for a plant far away from the origin of its coordinates.
//
// With volumes the size is theirs: each is centred, its longest axis from -1 to 1. The coordinates of meshes beside
// them are taken for voxels of the first volume, the centre of voxel (0, 0, 0) at the origin: so surfaces that were
// made from a volume lie in it.
struct Scene {
    std::vector<Mesh> meshes; // each file in a colour of its own
    std::vector<Volume> volumes;
    Marks marks;
    double unit;                  // of the files for 1 of the scene
    std::array<double, 3> middle; // in the files' coordinates
    Box box; // the true union, marks included; without volumes of radius 1, or 0 when all there is is one point
};

// Throws Failure when a file cannot be read or has nothing that could be drawn.
Scene LoadScene(const std::vector<std::string>& files, const Marks& marks, ProgressBar& progress);

} // namespace KOVA::Quorvex::cli
