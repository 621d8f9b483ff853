#pragma once

#include <array>
#include <cstdint>

#include <Quorvex/analysis/Histogram.h>
#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

class VolumeData;

// How many voxels there are of each of the 256 intensities. Counted on all cores, about as fast as memory is read; any
// thread may ask while nobody writes to the voxels. Throws std::bad_alloc.
QUORVEX_API std::array<std::uint64_t, 256> CountIntensities(const VolumeData& data);

// The same as a histogram of 256 bins; a count that no int holds becomes the largest int.
QUORVEX_API Histogram HistogramOf(const VolumeData& data);
QUORVEX_API Histogram HistogramOf(const std::array<std::uint64_t, 256>& counts);

} // namespace KOVA::Quorvex
