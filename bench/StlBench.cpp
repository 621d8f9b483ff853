#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include <benchmark/benchmark.h>

#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/mesh/MeshWriter.h>
#include <Quorvex/mesh/StlAscii.h>
#include <Quorvex/platform/File.h>

#include "Compare.h"
#include "FreshProcess.h"

// Reading and writing STL beside what bounds them.

namespace {

using namespace KOVA::Quorvex;
namespace fs = std::filesystem;

constexpr std::size_t binaryTriangles = 1000000;
constexpr std::size_t asciiTriangles = 300000;
constexpr std::size_t recordBytes = 50;
constexpr std::size_t prefixBytes = 84;

class StlFiles {
public:
    StlFiles() : m_directory(fs::temp_directory_path() / ("quorvex-bench-" + std::to_string(getpid()))) {
        fs::create_directories(m_directory);
        WriteBinary();
        WriteAscii();
    }
    ~StlFiles() { fs::remove_all(m_directory); }
    StlFiles(const StlFiles&) = delete;
    StlFiles& operator=(const StlFiles&) = delete;

    std::string Binary() const { return (m_directory / "binary.stl").string(); }
    std::string Ascii() const { return (m_directory / "ascii.stl").string(); }
    std::string Output() const { return (m_directory / "output.stl").string(); }

private:
    float Coordinate() { return m_distribution(m_random); }

    void WriteBinary() {
        std::FILE* const file = std::fopen(Binary().c_str(), "wb");
        char prefix[prefixBytes] = {};
        const auto count = static_cast<std::uint32_t>(binaryTriangles);
        std::memcpy(prefix + 80, &count, sizeof(count));
        std::fwrite(prefix, 1, sizeof(prefix), file);
        for (std::size_t i = 0; i < binaryTriangles; ++i) {
            char record[recordBytes] = {};
            for (std::size_t k = 0; k < 12; ++k) {
                const float value = Coordinate();
                std::memcpy(record + k * sizeof(value), &value, sizeof(value));
            }
            std::fwrite(record, 1, sizeof(record), file);
        }
        std::fclose(file);
    }

    void PrintVector(std::FILE* file, const char* before) {
        const auto x = static_cast<double>(Coordinate());
        const auto y = static_cast<double>(Coordinate());
        const auto z = static_cast<double>(Coordinate());
        std::fprintf(file, "%s %e %e %e\n", before, x, y, z);
    }

    void WriteAscii() {
        std::FILE* const file = std::fopen(Ascii().c_str(), "wb");
        std::fputs("solid benchmark\n", file);
        for (std::size_t i = 0; i < asciiTriangles; ++i) {
            PrintVector(file, "  facet normal");
            std::fputs("    outer loop\n", file);
            for (int corner = 0; corner < 3; ++corner) {
                PrintVector(file, "      vertex");
            }
            std::fputs("    endloop\n  endfacet\n", file);
        }
        std::fputs("endsolid benchmark\n", file);
        std::fclose(file);
    }

    fs::path m_directory;
    std::mt19937 m_random{1};
    std::uniform_real_distribution<float> m_distribution{-100.0F, 100.0F};
};

const StlFiles& StlTestFiles() {
    static const StlFiles s_files;
    return s_files;
}

std::vector<char> Bytes(const std::string& path) {
    std::vector<char> bytes(fs::file_size(path));
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
    return bytes;
}

void ReadBytesAlone(const std::string& path) {
    platform::InputFile file;
    file.Open(path.c_str());
    const auto size = static_cast<std::size_t>(file.Size());
    const std::unique_ptr<char[]> bytes(new char[size]);
    benchmark::DoNotOptimize(file.ReadAt(0, bytes.get(), size));
}

void ReadAndDecodePlainly(const std::string& path) {
    platform::InputFile file;
    file.Open(path.c_str());
    const auto size = static_cast<std::size_t>(file.Size());
    const std::unique_ptr<char[]> bytes(new char[size]);
    file.ReadAt(0, bytes.get(), size);
    const std::unique_ptr<Vector3f[]> normals(new Vector3f[binaryTriangles * 3]);
    const std::unique_ptr<Vector3f[]> vertices(new Vector3f[binaryTriangles * 3]);
    for (std::size_t i = 0; i < binaryTriangles; ++i) {
        Vector3f record[4];
        std::memcpy(record, bytes.get() + prefixBytes + i * recordBytes, sizeof(record));
        for (std::size_t corner = 0; corner < 3; ++corner) {
            normals[i * 3 + corner] = record[0];
            vertices[i * 3 + corner] = record[corner + 1];
        }
    }
    benchmark::DoNotOptimize(normals[17]);
    benchmark::DoNotOptimize(vertices[17]);
}

void Read(Mesh (*read)(const char*), const std::string& path) {
    const Mesh mesh = read(path.c_str());
    benchmark::DoNotOptimize(mesh.GetRadius());
    if (MeshReader::GetError() != MR_NO_ERROR) {
        std::abort();
    }
}

void BinaryAgainstBytesAlone(benchmark::State& state) {
    const std::string path = StlTestFiles().Binary();
    Compare(
        state, [&] { Read(MeshReader::ReadSTL, path); }, [&] { ReadBytesAlone(path); });
}

void BinaryAgainstPlainDecode(benchmark::State& state) {
    const std::string path = StlTestFiles().Binary();
    Compare(
        state, [&] { Read(MeshReader::ReadSTL, path); }, [&] { ReadAndDecodePlainly(path); });
}

void TolerantBinaryAgainstPlainDecode(benchmark::State& state) {
    const std::string path = StlTestFiles().Binary();
    Compare(
        state, [&] { Read(MeshReader::ReadSTLTolerant, path); }, [&] { ReadAndDecodePlainly(path); });
}

void AsciiAgainstBytesAlone(benchmark::State& state) {
    const std::string path = StlTestFiles().Ascii();
    Compare(
        state, [&] { Read(MeshReader::ReadSTL, path); }, [&] { ReadBytesAlone(path); });
}

void TolerantAsciiAgainstStrict(benchmark::State& state) {
    const std::string path = StlTestFiles().Ascii();
    Compare(
        state, [&] { Read(MeshReader::ReadSTLTolerant, path); }, [&] { Read(MeshReader::ReadSTL, path); });
}

// What files cost that have to be read from front to back.
void SequentialAsciiAgainstStrict(benchmark::State& state) {
    const std::string path = StlTestFiles().Ascii();
    const auto sequential = [&] {
        platform::InputFile file;
        file.Open(path.c_str());
        benchmark::DoNotOptimize(stl::ReadAsciiTrianglesSequentially(file).Count());
    };
    Compare(state, sequential, [&] { Read(MeshReader::ReadSTL, path); });
}

void WriteAgainstOneWrite(benchmark::State& state) {
    const Mesh mesh = MeshReader::ReadSTL(StlTestFiles().Binary().c_str());
    const std::vector<char> bytes = Bytes(StlTestFiles().Binary());
    const std::string output = StlTestFiles().Output();
    // Both make a new file: giving back the pages of an old one is not part of either.
    const auto oneWrite = [&] {
        std::FILE* const file = std::fopen(output.c_str(), "wb");
        benchmark::DoNotOptimize(std::fwrite(bytes.data(), 1, bytes.size(), file));
        std::fclose(file);
    };
    Compare(
        state, [&] { MeshWriter::WriteSTLBinary(output.c_str(), mesh); }, oneWrite, [&] { fs::remove(output); });
}

void PeakMemoryAgainstArrays(benchmark::State& state, const std::string& path, std::size_t triangles) {
    double peak = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        peak = PeakMemory(path);
    }
    const double arrays = static_cast<double>(triangles * 6 * sizeof(Vector3f)) / (1024.0 * 1024.0);
    state.counters["peak_MiB"] = peak;
    state.counters["arrays_MiB"] = arrays;
    state.counters["ratio"] = peak / arrays;
}

void BinaryPeakMemory(benchmark::State& state) {
    PeakMemoryAgainstArrays(state, StlTestFiles().Binary(), binaryTriangles);
}

void AsciiPeakMemory(benchmark::State& state) {
    PeakMemoryAgainstArrays(state, StlTestFiles().Ascii(), asciiTriangles);
}

BENCHMARK(BinaryPeakMemory)->Iterations(1);
BENCHMARK(AsciiPeakMemory)->Iterations(1);
BENCHMARK(BinaryAgainstBytesAlone)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(BinaryAgainstPlainDecode)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(TolerantBinaryAgainstPlainDecode)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(AsciiAgainstBytesAlone)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(TolerantAsciiAgainstStrict)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(SequentialAsciiAgainstStrict)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);
BENCHMARK(WriteAgainstOneWrite)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(15);

} // namespace
