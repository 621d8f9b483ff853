#include <cstdint>
#include <cstring>

#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/mesh/StlAscii.h>
#include <Quorvex/mesh/StlForgiving.h>
#include <Quorvex/mesh/StlTolerant.h>
#include <Quorvex/platform/File.h>

#include "MemoryFile.h"

// Any bytes as an STL file: nothing may crash, leak or be read out of bounds, and ways that should agree must.

namespace {

using namespace KOVA::Quorvex;

void RequireSound(const stl::Triangles& triangles) {
    if (!triangles) {
        return;
    }
    const stl::Bounds bounds = stl::MeasureBounds(triangles);
    Require(triangles.data->GetBB0() == bounds.lower && triangles.data->GetBB1() == bounds.upper, "box");
    Require(triangles.data->GetNumNormals() == triangles.data->GetNumVertices() || triangles.Count() == 0, "normals");
}

void RequireSame(const stl::Triangles& a, const stl::Triangles& b, const char* what) {
    Require(static_cast<bool>(a) == static_cast<bool>(b), what);
    if (a) {
        const std::size_t bytes = a.Count() * 3 * sizeof(Vector3f);
        Require(a.Count() == b.Count(), what);
        Require(bytes == 0 || std::memcmp(a.vertices, b.vertices, bytes) == 0, what);
        Require(bytes == 0 || std::memcmp(a.normals, b.normals, bytes) == 0, what);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const MemoryFile contents(bytes, count);
    platform::InputFile file;
    Require(file.Open(contents.Path().c_str()), "open");

    const stl::Triangles sequential = stl::ReadAsciiTrianglesSequentially(file);
    RequireSound(sequential);
    RequireSame(sequential, stl::ReadAsciiTriangles(file), "one block");
    RequireSame(sequential, stl::ReadAsciiTriangles(file, {1 + count / 3, 16}), "several blocks");

    const stl::Triangles tolerant = stl::ReadTolerantTriangles(file);
    RequireSound(tolerant);
    for (std::size_t i = 0; tolerant && i < tolerant.Count() * 3; ++i) {
        Require(stl::IsFinite(tolerant.vertices[i]) && stl::IsFinite(tolerant.normals[i]), "not finite");
    }
    // What is regular enough for the parallel way is the same by the forgiving one.
    const stl::Triangles regular = stl::ReadRegularSolids(file, 0, {1 + count / 2, 64});
    RequireSame(regular, stl::ReadRegularSolids(file, 0), "regular blocks");
    RequireSound(stl::ReadForgivingly(file, 0, 16));

    const Mesh strict = MeshReader::ReadSTL(contents.Path().c_str());
    Require(MeshReader::GetError() != MR_NO_ERROR || strict.GetData().GetNumVertices() % 3 == 0, "whole triangles");
    return 0;
}
