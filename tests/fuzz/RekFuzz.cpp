#include <cmath>
#include <cstring>
#include <exception>

#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/volume/VolumeReader.h>

#include "MemoryFile.h"

// Any bytes as a REK file: nothing may crash, leak or take memory that the file does not back, and what is read is what
// single samples give.

namespace {

using namespace KOVA::Quorvex;

unsigned char VoxelOf(const RekHeader& header, const std::uint8_t* body, std::size_t i) {
    if (header.bits == REK_UINT8) {
        return body[i];
    }
    if (header.bits == REK_UINT16) {
        return body[2 * i + 1];
    }
    float sample = 0.0F;
    std::memcpy(&sample, body + 4 * i, sizeof(sample));
    const float range = header.recVolMax - header.recVolMin;
    const float level = (sample - header.recVolMin) / (range == 0.0F ? 1.0F : range) * 255.999F;
    const double rest = std::fmod(std::trunc(static_cast<double>(level)), 256.0);
    return std::isnan(rest) ? 0 : static_cast<unsigned char>(static_cast<int>(rest) & 0xFF);
}

void RequireSameVoxels(const RekHeader& header, const VolumeData& data, const std::uint8_t* body) {
    const std::size_t slice = data.getDimX() * data.getDimY();
    const std::size_t depth = data.getDimZ();
    Require(static_cast<std::int64_t>(slice * depth * header.SampleBytes()) == header.BodyBytes(), "dimensions");
    for (std::size_t i = 0; i < slice * depth; ++i) {
        const std::size_t place = (depth - 1 - i / slice) * slice + i % slice;
        Require(data.getDataPtr()[place] == VoxelOf(header, body, i), "voxel");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    constexpr std::size_t headerBytes = 2048;
    SetWarningHandler([](const char*, const char*, void*) {}, nullptr);
    const MemoryFile contents(bytes, count);
    bool fits = false;
    try {
        const RekHeader header = VolumeReader::ReadREKHeader(contents.Path().c_str());
        fits = header.BodyBytes() >= 0 && static_cast<std::int64_t>(count - headerBytes) >= header.BodyBytes();
        const Volume volume = VolumeReader::ReadREK(contents.Path().c_str());
        Require(fits, "more than the file holds");
        RequireSameVoxels(header, volume.GetData(), bytes + headerBytes);
    } catch (const std::exception& error) {
        Require(!fits && std::strstr(error.what(), "Quorvex::VolumeReader::ReadREK -> ") == error.what(), error.what());
    }
    return 0;
}
