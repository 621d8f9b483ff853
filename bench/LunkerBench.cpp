// Lunkers and histograms beside reading the voxels once, on one core; and the memory that lunkers take beside the
// voxels and the mesh that comes out.

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/Parallel.h>
#include <Quorvex/platform/Memory.h>

#include "Compare.h"
#include "FreshProcess.h"
#include "Spheres.h"

namespace {

using namespace KOVA::Quorvex;

constexpr double c_mebibyte = 1024.0 * 1024.0;

void ReadVoxels(const VolumeData& data) {
    constexpr int absent = 7;
    benchmark::DoNotOptimize(std::memchr(data.getDataPtr(), absent, data.getDimX() * data.getDimY() * data.getDimZ()));
}

void CountMesh(benchmark::State& state, const MeshData& mesh) {
    const double triangles = mesh.GetNumIndices() / 3.0;
    state.counters["triangles"] = triangles;
    state.counters["mesh_MiB"] = triangles * (6.0 * sizeof(Vector3f) + 3.0 * sizeof(unsigned int)) / c_mebibyte;
}

// As many bytes as the mesh has, in fresh memory: no mesh is made in less.
void WriteMeshBytes(std::size_t bytes) {
    constexpr std::size_t part = std::size_t{1} << 22U;
    const std::unique_ptr<unsigned char[]> mesh(new unsigned char[bytes]);
    platform::AdviseLargeBlock(mesh.get(), bytes);
    ParallelFor((bytes + part - 1) / part,
                [&](std::size_t i) { std::memset(mesh.get() + i * part, 1, std::min(part, bytes - i * part)); });
    benchmark::DoNotOptimize(mesh.get());
}

// goal: milliseconds, half of what a threaded toolkit takes for surface, connectivity and normals where it was
// measured.
void LunkersAgainst(benchmark::State& state, std::size_t edge, int spheres, bool withMesh, double goal) {
    VolumeData data;
    MarkSpheres(data, edge, spheres);
    std::optional<Mesh> mesh(data.TriangulateLunker());
    CountMesh(state, mesh->GetData());
    const std::size_t meshBytes =
        std::size_t{mesh->GetData().GetNumVertices()} * (2 * sizeof(Vector3f) + sizeof(unsigned int));
    const auto limit = [&] {
        ReadVoxels(data);
        if (withMesh) {
            WriteMeshBytes(meshBytes);
        }
    };
    Compare(
        state, [&] { mesh.emplace(data.TriangulateLunker()); }, limit, [&] { mesh.reset(); });
    state.counters["goal_ms"] = goal;
}

// The limit is the voxels and the mesh; what the peer needs is 9.5 times the voxels.
void LunkersPeakMemory(benchmark::State& state, std::size_t edge, int spheres) {
    double peak = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        peak = PeakMemory(NameOfSpheres(edge, spheres));
    }
    VolumeData data;
    MarkSpheres(data, edge, spheres);
    CountMesh(state, data.TriangulateLunker().GetData());
    const double voxels = static_cast<double>(edge * edge * edge) / c_mebibyte;
    state.counters["peak_MiB"] = peak;
    state.counters["voxels_MiB"] = voxels;
    state.counters["ratio"] = peak / (voxels + state.counters["mesh_MiB"].value);
    state.counters["voxels_ratio"] = peak / voxels;
}

void HistogramAgainstReading(benchmark::State& state, std::size_t edge) {
    VolumeData data;
    data.createData(edge, edge, edge);
    for (std::size_t i = 0; i < edge * edge * edge; ++i) { // air of few levels, material of many
        const auto level = i % 512 < 300 ? 8 + i % 3 : 160 + (i * 2654435761U >> 27U) % 32;
        data.getDataPtr()[i] = static_cast<unsigned char>(level);
    }
    Compare(
        state, [&] { benchmark::DoNotOptimize(HistogramOf(data).getMax()); }, [&] { ReadVoxels(data); });
}

BENCHMARK_CAPTURE(LunkersPeakMemory, 256, 256, 2000)->Iterations(1);
BENCHMARK_CAPTURE(LunkersPeakMemory, 512, 512, 10000)->Iterations(1);
BENCHMARK_CAPTURE(LunkersAgainst, 256_reading, 256, 2000, false, 199.0)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(LunkersAgainst, 256_reading_and_mesh_bytes, 256, 2000, true, 199.0)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(LunkersAgainst, 512_reading, 512, 10000, false, 1392.5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(LunkersAgainst, 512_reading_and_mesh_bytes, 512, 10000, true, 1392.5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(HistogramAgainstReading, 512, 512)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(9);

} // namespace
