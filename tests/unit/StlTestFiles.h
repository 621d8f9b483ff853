#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshReader.h>
#include <Quorvex/mesh/StlTriangles.h>

#include <tests/TestDirectory.h>

// Files for the tests of STL input and output, made on the spot.

namespace stltest {

using namespace KOVA::Quorvex;
namespace fs = std::filesystem;

class Directory : public TestDirectory {
public:
    std::string Write(std::string_view contents, const std::string& file = "test.stl") const {
        fs::remove(Path() / file); // some file systems write a truncated file to the disk at once
        std::ofstream(Path() / file, std::ios::binary)
            .write(contents.data(), static_cast<std::streamsize>(contents.size()));
        return Name(file);
    }
};

inline std::string Contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A facet as most programs write it.
inline std::string FacetText(std::string_view normal, std::string_view a, std::string_view b, std::string_view c) {
    std::string text = "  facet normal " + std::string(normal) + "\n    outer loop\n";
    for (const std::string_view corner : {a, b, c}) {
        text += "      vertex " + std::string(corner) + "\n";
    }
    return text + "    endloop\n  endfacet\n";
}

inline std::string UnitFacet() {
    return FacetText("0 0 1", "0 0 0", "1 0 0", "0 1 0");
}

inline std::string Solid(const std::string& facets) {
    return "solid part\n" + facets + "endsolid part\n";
}

using Record = std::vector<float>; // normal and three corners: 12 numbers

inline Record UnitRecord() {
    return {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0};
}

template <typename Value> void AppendBytes(std::string& bytes, Value value) {
    char raw[sizeof(value)];
    std::memcpy(raw, &value, sizeof(value));
    bytes.append(raw, sizeof(raw));
}

// A binary file that announces as many triangles as the caller says.
inline std::string BinaryText(std::uint32_t announced, const std::vector<Record>& records, std::string header = "") {
    header.resize(80, '\0');
    AppendBytes(header, announced);
    for (const Record& record : records) {
        for (const float number : record) {
            AppendBytes(header, number);
        }
        AppendBytes(header, std::uint16_t{0});
    }
    return header;
}

// All that a reader found out, comparable to the bit.
struct Outcome {
    bool read = false;
    std::vector<std::uint32_t> bits; // box, then normals, then vertices

    bool operator==(const Outcome& other) const { return read == other.read && bits == other.bits; }

    std::size_t Triangles() const { return bits.size() < 6 ? 0 : (bits.size() - 6) / 18; }
    float Number(std::size_t index) const {
        float value = 0.0F;
        std::memcpy(&value, &bits[index], sizeof(value));
        return value;
    }
    Vector3f Normal(std::size_t triangle) const { return Vector(6 + triangle * 9); }
    Vector3f Corner(std::size_t triangle, std::size_t corner) const {
        return Vector(6 + Triangles() * 9 + triangle * 9 + corner * 3);
    }
    Vector3f Vector(std::size_t index) const { return {Number(index), Number(index + 1), Number(index + 2)}; }
};

inline void AppendVector(std::vector<std::uint32_t>& bits, const Vector3f& v) {
    for (const float number : {v.x, v.y, v.z}) {
        std::uint32_t raw = 0;
        std::memcpy(&raw, &number, sizeof(raw));
        bits.push_back(raw);
    }
}

inline Outcome OutcomeOf(const MeshData& data) {
    Outcome outcome;
    outcome.read = true;
    AppendVector(outcome.bits, data.GetBB0());
    AppendVector(outcome.bits, data.GetBB1());
    for (unsigned int i = 0; i < data.GetNumNormals(); ++i) {
        AppendVector(outcome.bits, data.GetNormal(i));
    }
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        AppendVector(outcome.bits, data.GetVertex(i));
    }
    return outcome;
}

inline Outcome OutcomeOf(const stl::Triangles& triangles) {
    return triangles ? OutcomeOf(*triangles.data) : Outcome();
}

// What a reader makes of a file; checks that failures leave an empty mesh and say why.
inline Outcome OutcomeOf(Mesh (*read)(const char*), const std::string& path) {
    const Mesh mesh = read(path.c_str());
    const MeshData& data = mesh.GetData();
    if (MeshReader::GetError() != MR_NO_ERROR) {
        EXPECT_EQ(data.GetNumVertices(), 0U);
        EXPECT_EQ(data.GetVertexArray(), nullptr);
        EXPECT_EQ(data.GetNormalArray(), nullptr);
        return {};
    }
    EXPECT_EQ(data.GetMode(), 4U);
    EXPECT_EQ(data.GetNumIndices(), 0U);
    EXPECT_EQ(data.GetNumColors(), 0U);
    EXPECT_EQ(mesh.GetBB0(), data.GetBB0());
    EXPECT_EQ(mesh.GetBB1(), data.GetBB1());
    return OutcomeOf(data);
}

} // namespace stltest
