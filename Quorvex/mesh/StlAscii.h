#pragma once

#include <cstddef>
#include <cstdint>

#include <Quorvex/mesh/StlText.h>
#include <Quorvex/mesh/StlTriangles.h>
#include <Quorvex/platform/File.h>

// ASCII STL in two passes over the file, both on several threads: count the facets, allocate, and read each block of
// the file into its place. Reading blocks independently gives what reading from front to back would give only if the
// facets follow each other as they should, which is checked; any other file is read from front to back.

namespace KOVA::Quorvex::stl {

struct AsciiOptions {
    std::size_t blockBytes = std::size_t{1} << 20;  // what one thread takes at a time
    std::size_t bufferBytes = std::size_t{1} << 16; // what a thread holds of the file
};

// Where the first line ends that a read of at most 511 characters takes; -1 when there is nothing to read.
std::int64_t EndOfFirstLine(const platform::InputFile& file);

// All facets behind the first line. None when there are fewer than words "facet" (words that begin with it count). The
// sequential twin gives the same result on one thread. Throw std::bad_alloc.
Triangles ReadAsciiTriangles(const platform::InputFile& file, const AsciiOptions& options = {});
Triangles ReadAsciiTrianglesSequentially(const platform::InputFile& file, const AsciiOptions& options = {});

// The triangles of any number of solids, with nothing but those solids in the file from offset to its end; blank
// normals are computed. None when the file is not as regular as that or a coordinate is not finite.
Triangles ReadRegularSolids(const platform::InputFile& file, std::int64_t offset, const AsciiOptions& options = {});

} // namespace KOVA::Quorvex::stl
