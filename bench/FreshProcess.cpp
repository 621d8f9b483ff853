#include "FreshProcess.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <benchmark/benchmark.h>

#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/volume/VolumeReader.h>

#include "Spheres.h"

namespace {

using namespace KOVA::Quorvex;

constexpr const char* c_variable = "QUORVEX_BENCH_READ";

double PeakKibibytes(const std::string& name) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    std::FILE* const reader = popen((std::string(c_variable) + "='" + name + "' '" + program + "'").c_str(), "r");
    double kibibytes = 0.0;
    if (std::fscanf(reader, "%lf", &kibibytes) != 1) {
        std::abort();
    }
    pclose(reader);
    return kibibytes;
}

} // namespace

bool ReadInFreshProcess() {
    const char* const path = std::getenv(c_variable);
    if (path == nullptr) {
        return false;
    }
    if (TriangulateNamedSpheres(path)) {
        // that was it
    } else if (std::filesystem::path(path).extension() == ".rek") {
        const Volume volume = VolumeReader::ReadREK(path);
        benchmark::DoNotOptimize(volume.GetData().getDataPtr());
    } else if (*path != '\0') {
        const Mesh mesh = MeshReader::ReadSTL(path);
        benchmark::DoNotOptimize(mesh.GetRadius());
    }
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    status >> word;
    std::puts(word.c_str());
    return true;
}

double PeakMemory(const std::string& name) {
    return (PeakKibibytes(name) - PeakKibibytes("")) / 1024.0;
}
