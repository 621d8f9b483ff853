#include <Quorvex/mesh/MeshWriter.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include <Quorvex/core/OutputFile.h>
#include <Quorvex/mesh/StlBinary.h>

namespace KOVA::Quorvex {

namespace {

// What is written at once: file systems take few large pieces faster than many little ones.
constexpr std::size_t partTriangles = 20480;

// The attribute bytes of the records are there already.
void Encode(const Vector3f* normals, const Vector3f* vertices, std::size_t count, unsigned char* records) {
    for (std::size_t i = 0; i < count; ++i, records += stl::recordBytes, vertices += 3) {
        const Vector3f normal = normals != nullptr ? normals[i * 3] : Vector3f(0.0F, 0.0F, 0.0F);
        std::memcpy(records, &normal, sizeof(Vector3f));
        std::memcpy(records + sizeof(Vector3f), vertices, 3 * sizeof(Vector3f));
    }
}

bool WritePrefix(OutputFile& file, std::uint32_t count) {
    unsigned char prefix[stl::prefixBytes] = {};
    std::memcpy(prefix + stl::headerBytes, &count, sizeof(count));
    return file.Write(prefix, sizeof(prefix));
}

bool WriteRecords(OutputFile& file, const MeshData& data, std::size_t count) {
    const std::size_t most = std::min(count, partTriangles);
    const auto records = std::make_unique<unsigned char[]>(most * stl::recordBytes); // zeros
    const Vector3f* normals = data.GetNormalArray();
    const Vector3f* const vertices = data.GetVertexArray();
    for (std::size_t first = 0; first < count; first += most) {
        const std::size_t part = std::min(most, count - first);
        Encode(normals, vertices + first * 3, part, records.get());
        normals = normals != nullptr ? normals + part * 3 : nullptr;
        if (!file.Write(records.get(), part * stl::recordBytes)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool MeshWriter::WriteSTLBinary(const char* path, const Mesh& mesh) {
    const MeshData& data = mesh.GetData();
    const std::uint32_t count = data.GetNumVertices() / 3;
    if (count > 0 && data.GetVertexArray() == nullptr) {
        return false;
    }
    OutputFile file;
    return file.Open(path) && WritePrefix(file, count) && WriteRecords(file, data, count) && file.Commit();
}

} // namespace KOVA::Quorvex
