#pragma once

#include <Quorvex/mesh/StlTriangles.h>
#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex::stl {

// Whatever triangles there are in an STL file of the wild, see MeshReader::ReadSTLTolerant. None when it is no such
// file, or when none of its facets is of use. Throws std::bad_alloc.
Triangles ReadTolerantTriangles(const platform::InputFile& file);

} // namespace KOVA::Quorvex::stl
