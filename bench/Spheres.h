#pragma once

#include <cstddef>
#include <string>

#include <Quorvex/volume/VolumeData.h>

// Fills a volume with edge^3 voxels and that many voids, marked: spheres of 2 to 6 voxels anywhere, some of which
// overlap or reach over the border.
void MarkSpheres(KOVA::Quorvex::VolumeData& data, std::size_t edge, int spheres);

// For a fresh process: marks spheres, and triangulates them. The name is "spheres:EDGE:COUNT".
std::string NameOfSpheres(std::size_t edge, int spheres);
bool TriangulateNamedSpheres(const std::string& name); // false when it is another name
