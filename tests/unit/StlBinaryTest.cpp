#include <cfloat>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <Quorvex/mesh/MeshWriter.h>
#include <Quorvex/mesh/StlBinary.h>
#include <Quorvex/platform/File.h>

#include "StlTestFiles.h"

namespace {

using namespace stltest;

TEST(StlBinary, LengthDecidesWhetherTheCountIsRight) {
    const Directory directory;
    const std::string two = BinaryText(2, {UnitRecord(), UnitRecord()});
    struct Case {
        const char* what;
        std::string bytes;
        MRError error;
        std::size_t triangles;
    };
    const std::vector<Case> cases = {
        {"whole", two, MR_NO_ERROR, 2},
        {"without the last attribute", two.substr(0, two.size() - 2), MR_NO_ERROR, 2},
        {"with half of it", two.substr(0, two.size() - 1), MR_NO_ERROR, 2},
        {"without one byte more", two.substr(0, two.size() - 3), MR_READ_FAILED, 0},
        {"more than announced", BinaryText(1, {UnitRecord(), UnitRecord()}), MR_NO_ERROR, 1},
        {"less than announced", BinaryText(3, {UnitRecord(), UnitRecord()}), MR_READ_FAILED, 0},
        {"no triangles", BinaryText(0, {}), MR_NO_ERROR, 0},
        {"no whole count", BinaryText(0, {}).substr(0, 83), MR_READ_FAILED, 0},
        {"no count", std::string(80, '\0'), MR_READ_FAILED, 0},
        {"five bytes", "STLb\n", MR_READ_FAILED, 0},
        {"four bytes", "STLb", MR_READ_FAILED, 0},
        {"huge count", BinaryText(0xFFFFFFFFU, {UnitRecord()}), MR_READ_FAILED, 0},
        // Taken for text, as the first word says so; there is no facet in it.
        {"header of a text", BinaryText(1, {UnitRecord()}, "solid part"), MR_NO_ERROR, 0},
    };
    for (const Case& test : cases) {
        const Outcome outcome = OutcomeOf(MeshReader::ReadSTL, directory.Write(test.bytes));
        EXPECT_EQ(MeshReader::GetError(), test.error) << test.what;
        EXPECT_EQ(outcome.Triangles(), test.triangles) << test.what;
    }
    const std::string disguised = directory.Write(BinaryText(1, {UnitRecord()}, "solid part"));
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLBinary, disguised).Triangles(), 1U);
}

TEST(StlBinary, BitsArriveUnchangedAndNaNsAreNoExtent) {
    const Directory directory;
    const float nan = std::numeric_limits<float>::signaling_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const Record odd = {nan, infinity, -0.0F, nan, -3, 1e-45F, 2, nan, -0.0F, -1, 7, nan};
    const Record corner = {0, 0, 0, 1, infinity, 0, 1, 1, 5, 1, 1, 1};
    const Outcome outcome = OutcomeOf(MeshReader::ReadSTL, directory.Write(BinaryText(2, {odd, corner})));
    ASSERT_EQ(outcome.Triangles(), 2U);
    for (std::size_t k = 0; k < 12; ++k) {
        const std::size_t place = k < 3 ? 6 + k : 6 + 18 + k - 3;
        float expected = odd[k];
        EXPECT_EQ(std::memcmp(&outcome.bits[place], &expected, sizeof(expected)), 0) << k;
    }
    EXPECT_EQ(outcome.Vector(0), Vector3f(-1, -3, -0.0F));
    EXPECT_EQ(outcome.Vector(3), Vector3f(2, infinity, 5));

    const Record nowhere(12, nan);
    const Outcome none = OutcomeOf(MeshReader::ReadSTL, directory.Write(BinaryText(1, {nowhere})));
    EXPECT_EQ(none.Vector(0), Vector3f(FLT_MAX, FLT_MAX, FLT_MAX));
    EXPECT_EQ(none.Vector(3), Vector3f(-FLT_MAX, -FLT_MAX, -FLT_MAX));
}

TEST(StlBinary, BlocksMayEndAnywhere) {
    const Directory directory;
    std::vector<Record> records;
    for (int i = 0; i < 3000; ++i) {
        const auto x = static_cast<float>(i);
        records.push_back({x, 1, 2, -x, x * 0.5F, 3, 0.0F, x, -0.0F, std::sqrt(x), -1, x});
    }
    const std::string path = directory.Write(BinaryText(3000, records));
    const Outcome whole = OutcomeOf(MeshReader::ReadSTL, path);
    ASSERT_EQ(whole.Triangles(), 3000U);
    EXPECT_EQ(whole.Corner(2999, 1).y, 2999.0F);
    EXPECT_EQ(whole.Normal(1281).x, 1281.0F);
    platform::InputFile file;
    ASSERT_TRUE(file.Open(path.c_str()));
    for (const std::size_t block : {1U, 7U, 1279U, 1280U, 1281U, 2999U, 3000U}) {
        EXPECT_EQ(OutcomeOf(stl::ReadBinaryTriangles(file, 3000, block)), whole) << block;
    }
}

#if defined(__linux__) // elsewhere a file is not longer than the disk has room
// The file says that it holds more than 32 bits can count, and is as long as that.
TEST(StlBinary, CountsThatAMeshCannotHoldFail) {
    const Directory directory;
    constexpr std::uint32_t count = 0x60000000U;
    const std::string path = directory.Write(BinaryText(count, {}));
    std::error_code error;
    fs::resize_file(path, 84 + std::uintmax_t{50} * count, error); // 80 GB, all of it a hole
    ASSERT_FALSE(error) << error.message() << ": this file system has no room for a test file without contents";
    EXPECT_FALSE(OutcomeOf(MeshReader::ReadSTL, path).read);
    EXPECT_EQ(MeshReader::GetError(), MR_READ_FAILED);
}
#endif

TEST(StlBinary, TheLargestCountThatAMeshCanHold) {
    EXPECT_FALSE(stl::AllocateTriangles(0x55555556U));
    EXPECT_FALSE(stl::AllocateTriangles(std::uint64_t{1} << 40U));
    const stl::Triangles empty = stl::AllocateTriangles(0);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty.Count(), 0U);
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
// Leaves the process with little more memory than it has.
class MemoryLimit {
public:
    explicit MemoryLimit(rlim_t more) {
        getrlimit(RLIMIT_AS, &m_before);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit{pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more, m_before.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &m_before); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit m_before{};
};

TEST(StlBinary, MemoryThatCannotBeHadIsAnError) {
    const Directory directory;
    constexpr std::uint32_t count = 20000000; // 1 GB in the file, 1.4 GB in memory
    const std::string path = directory.Write(BinaryText(count, {}));
    fs::resize_file(path, 84 + std::uintmax_t{50} * count);
    const MemoryLimit limit(rlim_t{1} << 30U);
    for (const auto read : {MeshReader::ReadSTL, MeshReader::ReadSTLTolerant}) {
        EXPECT_FALSE(OutcomeOf(read, path).read);
        EXPECT_EQ(MeshReader::GetError(), MR_READ_FAILED);
    }
}
#endif

TEST(StlBinary, WhatIsWrittenIsRead) {
    const Directory directory;
    const std::string path = directory.Name("out.stl");
    constexpr unsigned int vertices = 7;
    std::vector<Vector3f> positions;
    std::vector<Vector3f> normals;
    for (unsigned int i = 0; i < vertices; ++i) {
        const auto x = static_cast<float>(i);
        positions.emplace_back(x, -x, 0.1F * x);
        normals.emplace_back(0.0F, x, 1.0F);
    }
    ColorRGB* const noColors = nullptr;
    auto* const lit = new MeshData(vertices, positions.data(), normals.data(), noColors, 4);
    auto* const plain = new MeshData(vertices, positions.data(), nullptr, noColors, 4);
    const Mesh litMesh(*lit);
    const Mesh plainMesh(*plain);

    ASSERT_TRUE(MeshWriter::WriteSTLBinary(path.c_str(), litMesh));
    // Two triangles; the seventh vertex belongs to none.
    EXPECT_EQ(Contents(path), BinaryText(2, {{0, 0, 1, 0, -0.0F, 0, 1, -1, 0.1F, 2, -2, 0.1F * 2.0F},
                                             {0, 3, 1, 3, -3, 0.1F * 3.0F, 4, -4, 0.1F * 4.0F, 5, -5, 0.1F * 5.0F}}));
    const Outcome back = OutcomeOf(MeshReader::ReadSTL, path);
    ASSERT_EQ(back.Triangles(), 2U);
    EXPECT_EQ(back.Corner(1, 2), positions[5]);
    EXPECT_EQ(back.Normal(1), normals[3]);

    ASSERT_TRUE(MeshWriter::WriteSTLBinary(path.c_str(), plainMesh));
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTL, path).Normal(1), Vector3f(0, 0, 0));

    ASSERT_TRUE(MeshWriter::WriteSTLBinary(path.c_str(), Mesh()));
    EXPECT_EQ(Contents(path), BinaryText(0, {}));
    EXPECT_EQ(directory.Entries(), 1U);
}

// More than one piece of the writer and several blocks of the reader.
TEST(StlBinary, LargeMeshesMakeTheRoundTrip) {
    const Directory directory;
    constexpr unsigned int triangles = 150001;
    std::vector<Vector3f> positions;
    std::vector<Vector3f> normals;
    for (unsigned int i = 0; i < triangles * 3; ++i) {
        positions.emplace_back(static_cast<float>(i), static_cast<float>(i % 1000), -1.0F);
        normals.emplace_back(static_cast<float>(i / 3), 0.0F, 1.0F);
    }
    ColorRGB* const noColors = nullptr;
    const Mesh mesh(*new MeshData(triangles * 3, positions.data(), normals.data(), noColors, 4));
    const std::string path = directory.Name("large.stl");
    ASSERT_TRUE(MeshWriter::WriteSTLBinary(path.c_str(), mesh));
    EXPECT_EQ(fs::file_size(path), 84U + 50U * triangles);
    const Mesh back = MeshReader::ReadSTL(path.c_str());
    ASSERT_EQ(back.GetData().GetNumVertices(), triangles * 3);
    EXPECT_EQ(std::memcmp(back.GetData().GetVertexArray(), positions.data(), positions.size() * sizeof(Vector3f)), 0);
    EXPECT_EQ(std::memcmp(back.GetData().GetNormalArray(), normals.data(), normals.size() * sizeof(Vector3f)), 0);
    EXPECT_EQ(back.GetBB1(), Vector3f(triangles * 3 - 1, 999, -1));
}

#if defined(__linux__)
std::size_t OpenDescriptors() {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

TEST(StlFiles, ErrorsLeaveNothingOpen) {
    const Directory directory;
    const std::string cut = directory.Write(BinaryText(5, {UnitRecord()}), "cut.stl");
    const std::string text = directory.Write("solid\nfacet normal", "text.stl");
    fs::create_directory(directory.Name("folder"));
    ASSERT_EQ(mkfifo(directory.Name("pipe").c_str(), 0600), 0);
    const std::size_t before = OpenDescriptors();
    const struct {
        std::string path;
        MRError error;
    } cases[] = {{directory.Name("missing.stl"), MR_OPEN_FAILED},
                 {"", MR_OPEN_FAILED},
                 {cut + "/x", MR_OPEN_FAILED},
                 {directory.Name("folder"), MR_READ_FAILED},
                 {directory.Name("pipe"), MR_READ_FAILED}, // nobody writes to it: nobody waits
                 {"/dev/zero", MR_READ_FAILED},
                 {cut, MR_READ_FAILED},
                 {text, MR_READ_FAILED}};
    for (const auto& test : cases) {
        for (const auto read :
             {MeshReader::ReadSTL, MeshReader::ReadSTLASCII, MeshReader::ReadSTLBinary, MeshReader::ReadSTLTolerant}) {
            if (test.path == cut && read == MeshReader::ReadSTLTolerant) {
                continue; // takes the one triangle
            }
            if (test.path == cut && read == MeshReader::ReadSTLASCII) {
                continue; // a text without facets
            }
            EXPECT_FALSE(OutcomeOf(read, test.path).read) << test.path;
            EXPECT_EQ(MeshReader::GetError(), test.error) << test.path;
        }
    }
    (void)MeshReader::ReadSTL(nullptr);
    EXPECT_EQ(MeshReader::GetError(), MR_OPEN_FAILED);
    EXPECT_FALSE(MeshWriter::WriteSTLBinary(directory.Name("missing/out.stl").c_str(), Mesh()));
    EXPECT_FALSE(MeshWriter::WriteSTLBinary(nullptr, Mesh()));
    EXPECT_EQ(OpenDescriptors(), before);
    OutcomeOf(MeshReader::ReadSTL, directory.Write(BinaryText(1, {UnitRecord()})));
    EXPECT_EQ(OpenDescriptors(), before);
}
#endif

} // namespace
