#pragma once

#include <cstddef>
#include <cstdint>

#include <Quorvex/mesh/StlTriangles.h>
#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex::stl {

// The triangles in ASCII STL that need not be well-formed, from textStart on. Words are known in any case; words of
// which a facet lacks some are done without, and others are passed over. Polygons are cut into fans. Facets that have
// less than three corners or one that is no point are left out, blank normals are computed.
//
// None when no triangle is left; a text that has no facets, and nothing else but solids, holds none to begin with and
// gives an empty result. Throws std::bad_alloc.
Triangles ReadForgivingly(const platform::InputFile& file, std::int64_t textStart,
                          std::size_t bufferBytes = std::size_t{1} << 16);

} // namespace KOVA::Quorvex::stl
