#pragma once

#include <cstddef>
#include <cstdint>

#include <Quorvex/mesh/StlTriangles.h>
#include <Quorvex/platform/File.h>

// The binary STL file, little-endian: a header of 80 bytes that means nothing, the number of triangles (32 bits), and
// for each triangle a record of 50 bytes: normal and three corners (3 floats each) and two attribute bytes that mean
// nothing either.

namespace KOVA::Quorvex::stl {

constexpr std::size_t headerBytes = 80;
constexpr std::size_t prefixBytes = 84; // header and count
constexpr std::size_t recordBytes = 50;
constexpr std::size_t attributeBytes = 2; // the last record does without them

// Records that a file of that length has room for.
std::int64_t RecordCapacity(std::int64_t fileBytes);

// The announced number of triangles; -1 when the file is too short to announce any.
std::int64_t AnnouncedTriangles(const platform::InputFile& file);

// The first count triangles of the file; none when it is shorter than that or a mesh cannot hold them. Throws
// std::bad_alloc. blockTriangles is what one thread takes at a time.
constexpr std::size_t defaultBlockTriangles = std::size_t{1} << 16;
Triangles ReadBinaryTriangles(const platform::InputFile& file, std::int64_t count,
                              std::size_t blockTriangles = defaultBlockTriangles);

} // namespace KOVA::Quorvex::stl
