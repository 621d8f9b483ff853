#pragma once

#include <cstddef>
#include <cstdint>

#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

// The kinds of samples in a REK file; the numbers stand in its header.
enum RekSamples : std::int16_t {
    REK_UINT8 = 8,
    REK_UINT16 = 16,
    REK_FLOAT = 24 // 32 bits all the same
};

// What the header of a REK file says. The file is little-endian: 2048 bytes of header, then depth slices of width x
// height samples, x fastest. The first slice of the file is the one with the largest z.
struct QUORVEX_API RekHeader {
    std::int16_t width = 0; // voxels along x, y and z; a damaged file may say what is negative
    std::int16_t height = 0;
    std::int16_t depth = 0;
    std::int16_t bits = REK_UINT8; // a RekSamples, or whatever stands there
    float recVolMin = 0.0F;        // float samples: the one that becomes voxel 0, and the one that becomes 255
    float recVolMax = 0.0F;

    // Bytes of a sample; 0 when bits says none of the three kinds.
    std::size_t SampleBytes() const;

    // Bytes of all samples; -1 when a dimension is negative or the kind unknown.
    std::int64_t BodyBytes() const;
};

} // namespace KOVA::Quorvex
