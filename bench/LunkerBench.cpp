// Lunkers and histograms beside reading the voxels once, on one core; and the memory that lunkers take beside the
// voxels and the mesh that comes out.

#include <cstring>
#include <optional>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>

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

// goal: milliseconds, half of what a threaded toolkit takes for surface, connectivity and normals where it was
// measured.
void LunkersAgainstReading(benchmark::State& state, std::size_t edge, int spheres, double goal) {
    VolumeData data;
    MarkSpheres(data, edge, spheres);
    std::optional<Mesh> mesh;
    Compare(
        state, [&] { mesh.emplace(data.TriangulateLunker()); }, [&] { ReadVoxels(data); }, [&] { mesh.reset(); });
    CountMesh(state, data.TriangulateLunker().GetData());
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
BENCHMARK_CAPTURE(LunkersAgainstReading, 256, 256, 2000, 199.0)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(LunkersAgainstReading, 512, 512, 10000, 1392.5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(HistogramAgainstReading, 512, 512)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(9);

} // namespace
