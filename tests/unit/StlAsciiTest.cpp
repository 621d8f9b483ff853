#include <array>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <random>

#include <gtest/gtest.h>

#include <Quorvex/mesh/StlAscii.h>
#include <Quorvex/platform/File.h>

#include "StlReference.h"
#include "StlTestFiles.h"

namespace {

using namespace stltest;

// Reads in blocks and buffers of the sizes given, in parallel or not.
Outcome ReadWith(const std::string& path, std::size_t blockBytes, std::size_t bufferBytes, bool sequential = false) {
    platform::InputFile file;
    EXPECT_TRUE(file.Open(path.c_str()));
    const stl::AsciiOptions options{blockBytes, bufferBytes};
    return OutcomeOf(sequential ? stl::ReadAsciiTrianglesSequentially(file, options)
                                : stl::ReadAsciiTriangles(file, options));
}

TEST(StlAscii, KeepsFileOrderAndMeasuresTheBox) {
    const Directory directory;
    const std::string path = directory.Write(
        Solid(FacetText("0 0 1", "-1 2 3", "4 -5 6.5", "0 0 -7") + FacetText("1 0 0", "8 9 1e1", "4 -5 6.5", "0 0 0")));
    MeshReader::s_eError = MR_OPEN_FAILED; // of a call before
    const Mesh mesh = MeshReader::ReadSTL(path.c_str());
    EXPECT_EQ(MeshReader::GetError(), MR_NO_ERROR);
    const MeshData& data = mesh.GetData();
    ASSERT_EQ(data.GetNumVertices(), 6U);
    EXPECT_EQ(data.GetVertex(1), Vector3f(4, -5, 6.5F));
    EXPECT_EQ(data.GetVertex(3), Vector3f(8, 9, 10));
    EXPECT_EQ(data.GetVertex(4), data.GetVertex(1)); // equal corners stay apart
    EXPECT_EQ(data.GetNormal(2), Vector3f(0, 0, 1));
    EXPECT_EQ(data.GetNormal(3), Vector3f(1, 0, 0));
    EXPECT_EQ(mesh.GetBB0(), Vector3f(-1, -5, -7));
    EXPECT_EQ(mesh.GetBB1(), Vector3f(8, 9, 10));
    EXPECT_EQ(mesh.GetCenter(), Vector3f(3.5F, 2, 1.5F));
    EXPECT_FLOAT_EQ(mesh.GetRadius(), 0.5F * Vector3f(9, 14, 17).Length());
}

TEST(StlAscii, ErrorsSayWhatWasWrong) {
    const Directory directory;
    struct Case {
        const char* what;
        std::string text;
        MRError error;
        std::size_t triangles;
    };
    const std::string facet = UnitFacet();
    const std::string longLine = "solid " + std::string(505, 'x');
    const std::vector<Case> cases = {
        {"empty file", "", MR_READ_FAILED, 0},
        {"four bytes", "soli", MR_READ_FAILED, 0},
        {"nothing but the word", "solid", MR_NO_ERROR, 0},
        {"no facets", "solid\nendsolid\n", MR_NO_ERROR, 0},
        {"nothing behind the last facet", "solid\n" + facet, MR_NO_ERROR, 1},
        {"cut behind the last number", "solid\n" + facet.substr(0, facet.find("endloop") - 5), MR_NO_ERROR, 1},
        {"cut in front of the last number", "solid\n" + facet.substr(0, facet.find("0\n    endloop")), MR_READ_FAILED,
         0},
        {"rubbish behind", Solid(facet) + "rubbish \x01\xff", MR_NO_ERROR, 1},
        {"a name that counts as a facet", "solid\n" + facet + "endsolid facets\n", MR_READ_FAILED, 0},
        {"a name that does not", "solid facet\n" + facet + "endsolid myfacet\n", MR_NO_ERROR, 1},
        {"two solids", Solid(facet) + Solid(facet), MR_READ_FAILED, 0},
        {"a second solid without facets", Solid(facet) + "solid b\nendsolid b\n", MR_NO_ERROR, 1},
        {"upper case", "solid\n  FACET NORMAL 0 0 1\n", MR_NO_ERROR, 0},
        {"capital in a word", "solid\n" + facet + "facet Normal 0 0 1", MR_READ_FAILED, 0},
        {"a polygon",
         "solid\n  facet normal 0 0 1 outer loop vertex 0 0 0 vertex 1 0 0 vertex 1 1 0 vertex 0 1 0"
         " endloop endfacet facet normal 0 0 1",
         MR_READ_FAILED, 0},
        {"first line as long as can be", longLine.substr(0, 510) + "\n" + facet, MR_NO_ERROR, 1},
        {"first line cut into a facet", longLine + facet, MR_NO_ERROR, 1},
        {"first line cut within a word", longLine + "x" + facet, MR_READ_FAILED, 0},
        {"end words may be missing", "solid\nfacet normal 0 0 1outerloopvertex0 0 0vertex1 0 0vertex0 1 0 " + facet,
         MR_NO_ERROR, 2},
        {"a broken end word eats its beginning",
         "solid\nfacetnormal0 0 1outerloopvertex0 0 0vertex1 0 0vertex0 1 0 endfacet\n" + facet, MR_READ_FAILED, 0},
        {"glued facets hide one", "solid\n" + facet.substr(0, facet.size() - 1) + facet.substr(2), MR_NO_ERROR, 1},
    };
    for (const Case& test : cases) {
        const Outcome outcome = OutcomeOf(MeshReader::ReadSTL, directory.Write(test.text));
        EXPECT_EQ(MeshReader::GetError(), test.error) << test.what;
        EXPECT_EQ(outcome.Triangles(), test.triangles) << test.what;
    }
    // Not only is there no facet: the box is still inside out.
    const Outcome empty = OutcomeOf(MeshReader::ReadSTL, directory.Write("solid\nendsolid\n"));
    EXPECT_EQ(empty.Vector(0), Vector3f(FLT_MAX, FLT_MAX, FLT_MAX));
    EXPECT_EQ(empty.Vector(3), Vector3f(-FLT_MAX, -FLT_MAX, -FLT_MAX));
}

// Files that announce more than they have room for are refused at once; these just have it.
TEST(StlAscii, TheShortestFacetsHaveRoom) {
    const Directory directory;
    std::string facets = "solid\n";
    for (int i = 0; i < 1000; ++i) {
        facets += "facetnormal0 0 0outerloopvertex1 0 0vertex0 0 0vertex0 0 1\n";
    }
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTL, directory.Write(facets)).Triangles(), 1000U);
}

// Texts that are nearly right, made by damaging right ones.
class Mutator {
public:
    std::string Make() {
        std::string text = Below(4) == 0 ? "solid name\r\n" : "solid a facet b\n";
        const int facets = 1 + Below(4);
        for (int i = 0; i < facets; ++i) {
            text += FacetText(Triple(), Triple(), Triple(), Triple());
        }
        text += "endsolid\n";
        for (int i = Below(3); i > 0; --i) {
            Damage(text);
        }
        return text;
    }

private:
    int Below(int end) { return static_cast<int>(m_random() % static_cast<unsigned int>(end)); }

    std::string Triple() { return Number() + Space() + Number() + Space() + Number(); }

    std::string Space() { return Below(20) == 0 ? "\t\n\v\f\r  " : " "; }

    std::string Number() {
        static constexpr std::array<std::string_view, 44> odd = {
            "nan",
            "-nan",
            "inf",
            "-INF",
            "Infinity",
            "+infinity",
            "infinit",
            "nan(7)",
            "0x1.8p3",
            "0X.8P-2",
            "0x1p",
            "0x",
            "0x.",
            "0x.p3",
            "0x1.921fb6p1",
            "-0x1p-149",
            "1e",
            "1e+",
            "1e5.3",
            "1.2.3",
            ".",
            "-",
            "+5",
            "--1",
            ".5",
            "5.",
            "1e999",
            "-1e-50",
            "00x1",
            "1E+05",
            "1e-45",
            "-0",
            "0e9999",
            "1d5",
            "1,5",
            "3.4028236e38",
            "7.0064923216240853546186479164495e-46",
            "0.000000000000000000000000000000000000011754942807573642918278464623",
            "16777217",
            "16777217.00000000000000000000001",
            "123456789012345678901234567890",
            "0x1.000001p0",
            "0x1.0000010000000000000000001p0",
            "1e+e5"};
        if (Below(40) == 0) {
            return std::string(odd[static_cast<std::size_t>(Below(static_cast<int>(odd.size())))]);
        }
        char text[64];
        static constexpr std::array<const char*, 6> formats = {"%e", "%g", "%f", "%.9g", "%.17g", "%.0f"};
        const double value = (static_cast<double>(m_random()) / 4294967296.0 - 0.5) * std::pow(10.0, Below(60) - 30);
        std::snprintf(text, sizeof(text), formats[static_cast<std::size_t>(Below(6))], value);
        return text;
    }

    void Damage(std::string& text) {
        static constexpr std::array<std::string_view, 14> pieces = {
            "facet", " facet ", "endfacet", "endloop ", "vertex", "normal", "\n", " ", "e", "x", "0", "-", ".", "\v"};
        const auto at = static_cast<std::size_t>(Below(static_cast<int>(text.size())));
        const auto length = static_cast<std::size_t>(1 + Below(6));
        switch (Below(7)) {
        case 0:
            text.erase(at, length);
            break;
        case 1:
            text.insert(at, pieces[static_cast<std::size_t>(Below(static_cast<int>(pieces.size())))]);
            break;
        case 2:
            text.insert(at, 1, '\0');
            break;
        case 3:
            text.insert(at, text.substr(static_cast<std::size_t>(Below(static_cast<int>(text.size()))), length * 10));
            break;
        case 4:
            text[at] = static_cast<char>(Below(256));
            break;
        case 5:
            text.resize(std::max<std::size_t>(at, text.size() / 2));
            break;
        default:
            EraseOneSpace(text, at);
            break;
        }
    }

    static void EraseOneSpace(std::string& text, std::size_t at) {
        const std::size_t space = text.find(' ', at);
        if (space != std::string::npos) {
            text.erase(space, 1);
        }
    }

    std::mt19937 m_random{20240607};
};

#if defined(__GLIBC__)
// Other C libraries differ in what they take for a number; the reader is the same everywhere.
TEST(StlAscii, ReadsDamagedTextsLikeFormattedInput) {
    const Directory directory;
    Mutator mutator;
    std::size_t readable = 0;
    constexpr int texts = 3000;
    for (int i = 0; i < texts; ++i) {
        const std::string text = mutator.Make();
        const std::string path = directory.Write(text);
        const Outcome expected = ReferenceAscii(path);
        readable += expected.Triangles() > 0 ? 1U : 0U;
        ASSERT_EQ(OutcomeOf(MeshReader::ReadSTLASCII, path), expected) << i << ":\n" << text;
        ASSERT_EQ(ReadWith(path, 1 + text.size() / 3, 16), expected) << i << ":\n" << text;
        ASSERT_EQ(ReadWith(path, 100, 40, true), expected) << i << ":\n" << text;
    }
    // The damage must leave enough of both kinds, or this proves nothing.
    EXPECT_GT(readable, texts / 5U);
    EXPECT_LT(readable, texts - texts / 5U);
}
#endif

TEST(StlAscii, BlocksMayEndAnywhere) {
    const Directory directory;
    const std::string facet = FacetText("0 0 1", "0.125 -3 1e2", "1 nan 0", "0 1 -0.0");
    const std::vector<std::string> texts = {
        Solid(facet + UnitFacet() + FacetText("0x1p3 0 0", "1 2 3", "4 5 6", "7 8 9")),
        "solid \n\n\n" + facet +
            "\n \t facet  normal\n0 0\r\n1 outer\tloop vertex 1 2 3vertex 4 5 6 vertex 7 8 9 endloopendfacet\n" + facet,
        Solid(facet) + Solid(facet),                 // fails however it is cut
        "solid\n" + facet + "endsolid facet\n",      // so does this
        "solid\n" + UnitFacet() + "x" + UnitFacet(), // and this
        "solid\n" + facet + std::string(300, ' ') + facet + std::string(300, '\n')};
    for (const std::string& text : texts) {
        const std::string path = directory.Write(text);
        const Outcome expected = ReadWith(path, text.size() + 1, 1 << 16, true);
        for (std::size_t block = 1; block <= text.size() + 1; ++block) {
            const std::size_t buffer = block % 2 == 0 ? 1 << 16 : 16 + block % 50;
            ASSERT_EQ(ReadWith(path, block, buffer), expected) << "block " << block << " of\n" << text;
        }
    }
}

// Large enough for several blocks of the usual size.
TEST(StlAscii, ReadsLargeFilesInParallel) {
    const Directory directory;
    std::string text = "solid large\n";
    constexpr int facets = 20000;
    for (int i = 0; i < facets; ++i) {
        const std::string a = std::to_string(i) + " " + std::to_string(i * 0.37) + " 1e-3";
        text += FacetText(i % 100 == 0 ? "nan nan nan" : "0 1 0", a, "-1 0 " + std::to_string(i), a);
    }
    text += "endsolid large\n";
    const std::string path = directory.Write(text);
    const Outcome outcome = OutcomeOf(MeshReader::ReadSTL, path);
    ASSERT_EQ(outcome.Triangles(), static_cast<std::size_t>(facets));
    EXPECT_EQ(outcome, ReadWith(path, text.size() + 1, 1 << 20, true));
    EXPECT_EQ(outcome.Corner(12345, 0).x, 12345.0F);
}

} // namespace
