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

// Files for the tests of STL input and output, made on the spot.

namespace stltest {

using namespace KOVA::Quorvex;
namespace fs = std::filesystem;

// A directory of its own for each test.
class Directory {
public:
    Directory() {
        static int s_number = 0;
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "-" + test->name() + "-" + std::to_string(++s_number);
        for (char& character : name) {
            character = character == '/' ? '-' : character;
        }
        // Programs that test the same at the same time do not meet: the address differs.
        name += "-" + std::to_string(reinterpret_cast<std::uintptr_t>(this) ^ std::hash<std::string>()(TimeText()));
        m_path = fs::temp_directory_path() / ("quorvex-" + name);
        fs::create_directories(m_path);
    }
    ~Directory() {
        std::error_code error;
        fs::remove_all(m_path, error);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    std::string Name(const std::string& file) const { return (m_path / file).string(); }

    std::string Write(std::string_view contents, const std::string& file = "test.stl") const {
        fs::remove(m_path / file); // some file systems write a truncated file to the disk at once
        std::ofstream(m_path / file, std::ios::binary)
            .write(contents.data(), static_cast<std::streamsize>(contents.size()));
        return Name(file);
    }

    std::size_t Entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_path), fs::directory_iterator()));
    }

private:
    static std::string TimeText() {
        return std::to_string(fs::file_time_type::clock::now().time_since_epoch().count());
    }

    fs::path m_path;
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
