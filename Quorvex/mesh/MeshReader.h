#pragma once

#include <cstdint>

#include <Quorvex/core/Export.h>
#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/mesh/Mesh.h>

namespace KOVA::Quorvex {

// The outcome of the last call of MeshReader.
enum MRError : std::uint32_t {
    MR_NO_ERROR = 0,
    MR_OPEN_FAILED = 1,        // the file could not be opened
    MR_READ_FAILED = 2,        // the file ended early or holds fewer triangles than it announces
    MR_UNSUPPORTED_FORMAT = 3, // the file's contents are of a kind that is not supported
    MR_CANCELLED = 4           // the host asked for the end, see ReadProgress
};

// Reads STL files. A mesh that was read has three vertices and three normals of its own for every triangle, in the
// order of the file: triangle k is vertices 3k, 3k+1, 3k+2; corners are not merged. Box, centre and radius are set.
// Positions are in the file's unit. The mesh owns its data. Paths are in the encoding of fopen.
//
// On failure the result is an empty mesh and GetError tells why; nothing stays open or allocated. Files are not
// trusted: an announced count that the file cannot hold is refused before anything is allocated. Numbers are read the
// same in every locale. The error is kept for the class as a whole: read on one thread at a time. No GL context is
// needed; large files are decoded on several threads.
class QUORVEX_API MeshReader {
public:
    // ASCII when the file begins with exactly the five bytes "solid", binary otherwise.
    static Mesh ReadSTL(const char* path);

    // One solid whose facets follow each other without anything else between them:
    // "facet normal x y z outer loop vertex x y z vertex x y z vertex x y z endloop endfacet". The first line is
    // skipped, what follows the last facet is not looked at.
    static Mesh ReadSTLASCII(const char* path);

    // 80 bytes of header, the number of triangles, 50 bytes for each; the two last bytes of the file may be missing.
    static Mesh ReadSTLBinary(const char* path);

    // For files from the wild: finds out whether the file is really ASCII or binary and reads all the triangles that it
    // holds. Takes binary files with a "solid" header or a count that is too large or was never filled in, byte-order
    // marks, leading blanks, any case, several solids, polygons (cut into fans), decimal commas and missing words.
    // Facets with fewer than three vertices or with coordinates that are no numbers are left out; normals that are
    // missing, zero or no numbers are computed from the corners. MR_READ_FAILED when there is no STL to be found in it,
    // or none of its facets is of use.
    static Mesh ReadSTLTolerant(const char* path);

    // The same while other threads look how far it has come, and may end it: MR_CANCELLED then.
    static Mesh ReadSTLWatched(const char* path, ReadProgress& progress);

    static MRError GetError() { return s_eError; }

    static MRError s_eError;

private:
    static Mesh ReadFailure(MRError error);
};

} // namespace KOVA::Quorvex
