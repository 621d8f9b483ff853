#include <Quorvex/volume/RekFormat.h>

#include <bit>
#include <cmath>
#include <cstring>

namespace KOVA::Quorvex {

std::size_t RekHeader::SampleBytes() const {
    switch (bits) {
    case REK_UINT8:
        return 1;
    case REK_UINT16:
        return 2;
    case REK_FLOAT:
        return 4;
    default:
        return 0;
    }
}

std::int64_t RekHeader::BodyBytes() const {
    const std::size_t sampleBytes = SampleBytes();
    if (width < 0 || height < 0 || depth < 0 || sampleBytes == 0) {
        return -1;
    }
    return std::int64_t{width} * height * depth * static_cast<std::int64_t>(sampleBytes);
}

namespace rek {

namespace {

static_assert(std::endian::native == std::endian::little, "samples are taken as they stand in the file");

constexpr std::size_t recVolMinOffset = 688;
constexpr std::size_t recVolMaxOffset = 692;

template <class T> T Get(const unsigned char* bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes + offset, sizeof(value));
    return value;
}

template <class T> void Put(unsigned char* bytes, std::size_t offset, T value) {
    std::memcpy(bytes + offset, &value, sizeof(value));
}

} // namespace

RekHeader ParseHeader(const unsigned char* bytes) {
    RekHeader header;
    header.width = Get<std::int16_t>(bytes, 0);
    header.height = Get<std::int16_t>(bytes, 2);
    header.bits = Get<std::int16_t>(bytes, 4);
    header.depth = Get<std::int16_t>(bytes, 6);
    header.recVolMin = Get<float>(bytes, recVolMinOffset);
    header.recVolMax = Get<float>(bytes, recVolMaxOffset);
    return header;
}

void ComposeHeader(const RekHeader& header, unsigned char* bytes) {
    std::memset(bytes, 0, headerBytes);
    Put(bytes, 0, header.width);
    Put(bytes, 2, header.height);
    Put(bytes, 4, header.bits);
    Put(bytes, 6, header.depth);
    Put(bytes, 8, static_cast<std::uint16_t>(headerBytes));
    Put(bytes, 10, std::uint16_t{2}); // what other programs expect here and below
    Put(bytes, 12, std::uint32_t{6});
    Put(bytes, recVolMinOffset, header.recVolMin);
    Put(bytes, recVolMaxOffset, header.recVolMax);
    Put(bytes, 1008, std::uint32_t{0x01020304});
    Put(bytes, 1016, std::uint64_t{0x0102030405060708});
}

void ConvertUint16(const unsigned char* samples, std::size_t count, unsigned char* voxels) {
    for (std::size_t i = 0; i < count; ++i) {
        voxels[i] = samples[2 * i + 1];
    }
}

void ConvertFloat(const unsigned char* samples, std::size_t count, float low, float range, unsigned char* voxels) {
    constexpr float scale = 255.999F;
    constexpr float limit = 2147483648.0F;
    for (std::size_t i = 0; i < count; ++i) {
        const float level = (Get<float>(samples, 4 * i) - low) / range * scale;
        const float cut = std::abs(level) < limit ? level : 0.0F;
        voxels[i] = static_cast<unsigned char>(static_cast<int>(cut) & 0xFF);
    }
}

} // namespace rek

} // namespace KOVA::Quorvex
