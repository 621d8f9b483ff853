#pragma once

#include <cstddef>

#include <Quorvex/volume/RekHeader.h>

// The bytes of REK files.

namespace KOVA::Quorvex::rek {

constexpr std::size_t headerBytes = 2048;

RekHeader ParseHeader(const unsigned char* bytes);

// Writes all headerBytes.
void ComposeHeader(const RekHeader& header, unsigned char* bytes);

// Samples, as they stand in the file, to voxels. 8 bits are taken over, of 16 bits the high byte is kept.
//
// A float f becomes (f - low) / range * 255.999, cut off towards zero and of that the low eight bits: values outside
// the range wrap around, as far as floats can tell integers apart. Beyond 2^31 they are multiples of 256, and become 0
// as what is not finite does.
void ConvertUint16(const unsigned char* samples, std::size_t count, unsigned char* voxels);
void ConvertFloat(const unsigned char* samples, std::size_t count, float low, float range, unsigned char* voxels);

} // namespace KOVA::Quorvex::rek
