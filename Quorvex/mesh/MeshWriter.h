#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/mesh/Mesh.h>

namespace KOVA::Quorvex {

class QUORVEX_API MeshWriter {
public:
    // Writes the vertex array as a plain triangle list in binary STL: triangle k is vertices 3k, 3k+1, 3k+2 with the
    // normal of the first (zero when the mesh has none). Indices are not used, vertices beyond a multiple of three are
    // left out. The mesh needs its client arrays, no GL context. False when the file could not be written in full; the
    // file that stood under that name before is then still there, and no part of the new one.
    static bool WriteSTLBinary(const char* path, const Mesh& mesh);
};

} // namespace KOVA::Quorvex
