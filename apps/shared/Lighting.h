#pragma once

#include "Programs.h"

namespace KOVA::Quorvex {
class MeshData;
class View;
} // namespace KOVA::Quorvex

// Normals for drawing a triangle list. What a file stores is there for machines; pictures need more.

namespace KOVA::Quorvex::apps {

// Makes each normal look to the side that the order of the triangle's corners makes the outside. Lighting takes that
// side for granted: a normal that points the other way would leave the surface black. Normals of no length become those
// of the corners.
void OrientNormals(MeshData& data);

// Turns normals towards the viewer, as far as is needed for lines and points to be seen from every side: lit as they
// are, those on surfaces that are seen edge-on, such as outlines, would be black. The data is in world coordinates, the
// normals are oriented.
void LightLines(MeshData& data, const View& view);

} // namespace KOVA::Quorvex::apps
