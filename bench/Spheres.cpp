#include "Spheres.h"

#include <algorithm>
#include <cstdio>
#include <random>

#include <benchmark/benchmark.h>

#include <Quorvex/mesh/Mesh.h>

using namespace KOVA::Quorvex;

namespace {

constexpr unsigned char c_lunker = 255;

// Sets the voxels of a sphere that are inside the volume.
void Mark(VolumeData& data, const double (&center)[3], double radius) {
    const auto edge = static_cast<int>(data.getDimX());
    const auto from = [&](int axis) { return std::max(0, static_cast<int>(center[axis] - radius)); };
    const auto to = [&](int axis) { return std::min(edge - 1, static_cast<int>(center[axis] + radius) + 1); };
    for (int z = from(2); z <= to(2); ++z) {
        for (int y = from(1); y <= to(1); ++y) {
            for (int x = from(0); x <= to(0); ++x) {
                const double d[] = {x - center[0], y - center[1], z - center[2]};
                if (d[0] * d[0] + d[1] * d[1] + d[2] * d[2] <= radius * radius) {
                    data.set(static_cast<std::size_t>(x), static_cast<std::size_t>(y), static_cast<std::size_t>(z),
                             c_lunker);
                }
            }
        }
    }
}

} // namespace

void MarkSpheres(VolumeData& data, std::size_t edge, int spheres) {
    data.createData(edge, edge, edge);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> anywhere(0.0, static_cast<double>(edge - 1));
    std::uniform_real_distribution<double> radius(2.0, 6.0);
    for (int i = 0; i < spheres; ++i) {
        const double center[] = {anywhere(random), anywhere(random), anywhere(random)};
        Mark(data, center, radius(random));
    }
}

std::string NameOfSpheres(std::size_t edge, int spheres) {
    return "spheres:" + std::to_string(edge) + ":" + std::to_string(spheres);
}

bool TriangulateNamedSpheres(const std::string& name) {
    std::size_t edge = 0;
    int spheres = 0;
    if (std::sscanf(name.c_str(), "spheres:%zu:%d", &edge, &spheres) != 2) {
        return false;
    }
    VolumeData data;
    MarkSpheres(data, edge, spheres);
    const Mesh mesh = data.TriangulateLunker();
    benchmark::DoNotOptimize(mesh.GetRadius());
    return true;
}
