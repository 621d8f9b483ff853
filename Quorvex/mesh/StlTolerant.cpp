#include <Quorvex/mesh/StlTolerant.h>

#include <algorithm>
#include <atomic>

#include <Quorvex/core/Parallel.h>
#include <Quorvex/mesh/StlAscii.h>
#include <Quorvex/mesh/StlBinary.h>
#include <Quorvex/mesh/StlForgiving.h>
#include <Quorvex/mesh/StlSniff.h>

namespace KOVA::Quorvex::stl {

namespace {

bool HasFiniteCorners(const Triangles& triangles, std::size_t index) {
    const Vector3f* const corners = triangles.vertices + index * 3;
    return IsFinite(corners[0]) && IsFinite(corners[1]) && IsFinite(corners[2]);
}

// Computes blank normals and returns how many triangles have finite corners.
std::size_t Repair(const Triangles& triangles) {
    constexpr std::size_t blockTriangles = std::size_t{1} << 16;
    const std::size_t count = triangles.Count();
    std::atomic<std::size_t> usable = 0;
    ParallelFor((count + blockTriangles - 1) / blockTriangles, [&](std::size_t block) {
        const std::size_t end = std::min(count, (block + 1) * blockTriangles);
        std::size_t finite = 0;
        for (std::size_t i = block * blockTriangles; i < end; ++i) {
            if (HasFiniteCorners(triangles, i)) {
                ++finite;
            }
            Vector3f* const normals = triangles.normals + i * 3;
            if (IsBlankNormal(*normals)) {
                const Vector3f* const corners = triangles.vertices + i * 3;
                std::fill_n(normals, 3, TriangleNormal(corners[0], corners[1], corners[2]));
            }
        }
        usable += finite;
    });
    return usable;
}

Triangles KeepFinite(const Triangles& all, std::size_t usable) {
    Triangles kept = AllocateTriangles(usable);
    std::size_t index = 0;
    for (std::size_t i = 0; i < all.Count(); ++i) {
        if (HasFiniteCorners(all, i)) {
            std::copy_n(all.normals + i * 3, 3, kept.normals + index * 3);
            std::copy_n(all.vertices + i * 3, 3, kept.vertices + index * 3);
            ++index;
        }
    }
    kept.SetBounds(MeasureBounds(kept));
    return kept;
}

Triangles ReadBinary(const platform::InputFile& file, std::int64_t count) {
    Triangles triangles = ReadBinaryTriangles(file, count);
    if (!triangles || count == 0) {
        return triangles;
    }
    const std::size_t usable = Repair(triangles);
    if (usable == triangles.Count()) {
        return triangles;
    }
    return usable > 0 ? KeepFinite(triangles, usable) : Triangles();
}

Triangles ReadText(const platform::InputFile& file, std::int64_t start) {
    Triangles triangles = ReadRegularSolids(file, start);
    return triangles ? std::move(triangles) : ReadForgivingly(file, start);
}

} // namespace

Triangles ReadTolerantTriangles(const platform::InputFile& file) {
    const Contents contents = Sniff(file);
    switch (contents.kind) {
    case Contents::Kind::Text:
        return ReadText(file, contents.textStart);
    case Contents::Kind::Binary:
        return ReadBinary(file, contents.binaryTriangles);
    case Contents::Kind::Unknown:
        break;
    }
    return {};
}

} // namespace KOVA::Quorvex::stl
