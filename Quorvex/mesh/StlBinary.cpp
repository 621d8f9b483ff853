#include <Quorvex/mesh/StlBinary.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <vector>

#include <Quorvex/core/Parallel.h>

namespace KOVA::Quorvex::stl {

namespace {

static_assert(std::endian::native == std::endian::little, "records are copied as they stand in the file");
static_assert(sizeof(Vector3f) == 12, "a record holds four vectors without gaps");

// What is read at once: small enough to be decoded out of the second-level cache.
constexpr std::size_t partTriangles = 1280;

// Spreads count records over the arrays, three corners a triangle.
void Decode(const unsigned char* record, std::size_t count, Vector3f* normals, Vector3f* vertices, Bounds& bounds) {
    Bounds box = bounds; // a local copy stays in registers
    for (std::size_t i = 0; i < count; ++i, record += recordBytes, normals += 3, vertices += 3) {
        Vector3f values[4];
        std::memcpy(values, record, sizeof(values));
        normals[0] = values[0];
        normals[1] = values[0];
        normals[2] = values[0];
        for (int corner = 0; corner < 3; ++corner) {
            vertices[corner] = values[corner + 1];
            box.Add(values[corner + 1]);
        }
    }
    bounds = box;
}

// False when the file ends early.
bool ReadBlock(const platform::InputFile& file, std::size_t first, std::size_t count, const Triangles& target,
               Bounds& bounds) {
    unsigned char buffer[partTriangles * recordBytes];
    while (count > 0) {
        const std::size_t part = std::min(count, partTriangles);
        const auto offset = static_cast<std::int64_t>(prefixBytes + first * recordBytes);
        if (file.ReadAt(offset, buffer, part * recordBytes) < part * recordBytes - attributeBytes) {
            return false;
        }
        Decode(buffer, part, target.normals + first * 3, target.vertices + first * 3, bounds);
        first += part;
        count -= part;
    }
    return true;
}

} // namespace

std::int64_t RecordCapacity(std::int64_t fileBytes) {
    const auto records = fileBytes - static_cast<std::int64_t>(prefixBytes - attributeBytes);
    return fileBytes < static_cast<std::int64_t>(prefixBytes) ? 0 : records / static_cast<std::int64_t>(recordBytes);
}

std::int64_t AnnouncedTriangles(const platform::InputFile& file) {
    unsigned char bytes[4];
    if (file.ReadAt(headerBytes, bytes, sizeof(bytes)) < sizeof(bytes)) {
        return -1;
    }
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::int64_t>(bytes[3]) << 24;
}

Triangles ReadBinaryTriangles(const platform::InputFile& file, std::int64_t count, std::size_t blockTriangles) {
    if (file.Size() < static_cast<std::int64_t>(prefixBytes) || count > RecordCapacity(file.Size())) {
        return {};
    }
    Triangles triangles = AllocateTriangles(static_cast<std::uint64_t>(count));
    if (!triangles) {
        return {};
    }
    const auto total = static_cast<std::size_t>(count);
    std::vector<Bounds> bounds((total + blockTriangles - 1) / blockTriangles);
    std::atomic<bool> complete = true;
    ParallelFor(bounds.size(), [&](std::size_t block) {
        const std::size_t first = block * blockTriangles;
        if (!ReadBlock(file, first, std::min(blockTriangles, total - first), triangles, bounds[block])) {
            complete = false;
        }
    });
    if (!complete) {
        return {};
    }
    Bounds box;
    for (const Bounds& part : bounds) {
        box.Add(part);
    }
    triangles.SetBounds(box);
    return triangles;
}

} // namespace KOVA::Quorvex::stl
