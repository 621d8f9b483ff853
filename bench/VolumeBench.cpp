// Reading REK files beside reading their bytes, and cutting a volume into bricks beside handing ready bricks to the
// driver.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/core/OutputFile.h>
#include <Quorvex/platform/File.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Memory.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/volume/BrickFill.h>
#include <Quorvex/volume/RekFormat.h>

#include "Compare.h"
#include "FreshProcess.h"

namespace {

using namespace KOVA::Quorvex;
using Library = KOVA::Quorvex::Quorvex;
namespace fs = std::filesystem;

constexpr std::size_t edge = 512;
constexpr std::size_t voxels = edge * edge * edge;

RekHeader Header(std::int16_t bits) {
    RekHeader header;
    header.width = header.height = header.depth = edge;
    header.bits = bits;
    header.recVolMax = 1.0F;
    return header;
}

// One file for each kind of samples.
class VolumeFiles {
public:
    VolumeFiles() : m_directory(fs::temp_directory_path() / "quorvex-volume-bench") {
        fs::create_directories(m_directory);
        for (const std::int16_t bits : {REK_UINT8, REK_UINT16, REK_FLOAT}) {
            Write(bits);
        }
    }
    ~VolumeFiles() { fs::remove_all(m_directory); }
    VolumeFiles(const VolumeFiles&) = delete;
    VolumeFiles& operator=(const VolumeFiles&) = delete;

    std::string Path(std::int16_t bits) const { return (m_directory / (std::to_string(bits) + ".rek")).string(); }

private:
    void Write(std::int16_t bits) const {
        const RekHeader header = Header(bits);
        std::vector<char> bytes(rek::headerBytes);
        rek::ComposeHeader(header, reinterpret_cast<unsigned char*>(bytes.data()));
        std::ofstream file(Path(bits), std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(edge * edge * header.SampleBytes());
        for (std::size_t z = 0; z < edge; ++z) {
            for (std::size_t i = 0; i < edge * edge; ++i) {
                const float value = static_cast<float>((i * 7 + z * i) % 1000) / 1000.0F;
                std::memcpy(&bytes[i * header.SampleBytes()], &value, header.SampleBytes());
            }
            file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        }
    }

    fs::path m_directory;
};

const VolumeFiles& VolumeTestFiles() {
    static const VolumeFiles s_files;
    return s_files;
}

void ReadBytes(const std::string& path, bool largePages) {
    platform::InputFile file;
    file.Open(path.c_str());
    const auto size = static_cast<std::size_t>(file.Size());
    const std::unique_ptr<char[]> bytes(new char[size]);
    if (largePages) {
        platform::AdviseLargeBlock(bytes.get(), size);
    }
    benchmark::DoNotOptimize(file.ReadAt(0, bytes.get(), size));
}

void ReadAgainstBytes(benchmark::State& state, std::int16_t bits, bool largePages) {
    const std::string path = VolumeTestFiles().Path(bits);
    const auto read = [&path] {
        const Volume volume = VolumeReader::ReadREK(path.c_str());
        benchmark::DoNotOptimize(volume.GetData().getDataPtr());
    };
    Compare(state, read, [&] { ReadBytes(path, largePages); });
}

void PeakMemoryAgainstVoxels(benchmark::State& state, std::int16_t bits) {
    const std::string path = VolumeTestFiles().Path(bits);
    double peak = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        peak = PeakMemory(path);
    }
    const double mebibytes = static_cast<double>(voxels) / (1024.0 * 1024.0);
    state.counters["peak_MiB"] = peak;
    state.counters["voxels_MiB"] = mebibytes;
    state.counters["ratio"] = peak / mebibytes;
}

void StartLibrary() {
    static const bool s_started = Library::Init(CreateOffscreenWindow(64, 64)) && VolumeData::InitExtensions();
    if (!s_started) {
        std::abort();
    }
}

void BricksAgainstReadyOnes(benchmark::State& state) {
    StartLibrary();
    VolumeData data(edge, edge, edge);
    for (std::size_t i = 0; i < voxels; ++i) {
        data.getDataPtr()[i] = static_cast<unsigned char>(i * 2654435761U >> 16U);
    }
    const bricks::Grid grid = bricks::CutVolume(data, 32, 32, 32, 2);
    std::vector<unsigned char> ready(grid.Count() * grid.BrickBytes());
    for (std::size_t i = 0; i < grid.Count(); ++i) {
        bricks::FillBrick(data, grid, i, &ready[i * grid.BrickBytes()]);
    }
    std::vector<unsigned int> textures(grid.Count());
    const auto upload = [&] {
        platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContextMultiThread());
        glGenTextures(static_cast<int>(textures.size()), textures.data());
        for (std::size_t i = 0; i < textures.size(); ++i) {
            glBindTexture(GL_TEXTURE_3D, textures[i]);
            glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_S, GL_CLAMP);
            glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_T, GL_CLAMP);
            glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_R, GL_CLAMP);
            glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            VolumeData::glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_LUMINANCE, 32, 32, 32, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                                        &ready[i * grid.BrickBytes()]);
        }
        platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContext());
        glFinish();
    };
    const auto cutAndUpload = [&data] {
        data.Update(STORAGE_VBO);
        glFinish();
    };
    const auto removeAll = [&] {
        data.destroyBricks();
        glDeleteTextures(static_cast<int>(textures.size()), textures.data());
        textures.assign(textures.size(), 0);
        glFinish();
    };
    Compare(state, cutAndUpload, upload, removeAll);
    removeAll();
}

BENCHMARK_CAPTURE(PeakMemoryAgainstVoxels, 8_bit, REK_UINT8)->Iterations(1);
BENCHMARK_CAPTURE(PeakMemoryAgainstVoxels, 16_bit, REK_UINT16)->Iterations(1);
BENCHMARK_CAPTURE(PeakMemoryAgainstVoxels, float, REK_FLOAT)->Iterations(1);
BENCHMARK_CAPTURE(ReadAgainstBytes, 8_bit, REK_UINT8, false)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(ReadAgainstBytes, 8_bit_large_pages, REK_UINT8, true)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(ReadAgainstBytes, 16_bit, REK_UINT16, false)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(ReadAgainstBytes, float, REK_FLOAT, false)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(ReadAgainstBytes, 16_bit_large_pages, REK_UINT16, true)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK_CAPTURE(ReadAgainstBytes, float_large_pages, REK_FLOAT, true)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK(BricksAgainstReadyOnes)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(7);

} // namespace
