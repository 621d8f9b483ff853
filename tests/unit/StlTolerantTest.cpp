#include <limits>

#include <gtest/gtest.h>

#include "StlTestFiles.h"

namespace {

using namespace stltest;

const std::string bom = "\xEF\xBB\xBF";

std::string Upper(std::string text) {
    for (char& character : text) {
        character = character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
    }
    return text;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string Utf16(const std::string& text) {
    std::string wide = "\xFF\xFE";
    for (const char character : text) {
        wide += character;
        wide += '\0';
    }
    return wide;
}

// What the strict and the tolerant reader make of the same file: triangles, or none for an error.
constexpr int none = -1;

struct Case {
    const char* what;
    std::string contents;
    int strict;
    int tolerant;
};

void Check(const std::vector<Case>& cases) {
    const Directory directory;
    const auto triangles = [](const Outcome& outcome) {
        return outcome.read ? static_cast<int>(outcome.Triangles()) : none;
    };
    for (const Case& test : cases) {
        const std::string path = directory.Write(test.contents);
        EXPECT_EQ(triangles(OutcomeOf(MeshReader::ReadSTL, path)), test.strict) << test.what;
        const Outcome tolerant = OutcomeOf(MeshReader::ReadSTLTolerant, path);
        EXPECT_EQ(triangles(tolerant), test.tolerant) << test.what;
        EXPECT_EQ(MeshReader::GetError(), test.tolerant == none ? MR_READ_FAILED : MR_NO_ERROR) << test.what;
        for (std::size_t i = 0; i < tolerant.Triangles(); ++i) {
            EXPECT_TRUE(stl::IsFinite(tolerant.Corner(i, 0)) && stl::IsFinite(tolerant.Corner(i, 2))) << test.what;
            EXPECT_FALSE(stl::IsBlankNormal(tolerant.Normal(i))) << test.what;
        }
    }
}

TEST(StlTolerant, TextsOfTheWild) {
    const std::string facet = UnitFacet();
    const std::string quad =
        "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nvertex 0 1 0\nendloop\nendfacet\n";
    const std::string line = Replaced(Replaced(facet, "\n", " "), "  ", " ");
    Check({
        {"as it should be", Solid(facet + facet), 2, 2},
        {"byte-order mark", bom + Solid(facet), none, 1},
        {"blanks in front", "\n\n  " + Solid(facet), none, 1},
        {"both", bom + " \r\n" + Solid(facet), none, 1},
        {"upper case", Upper(Solid(facet)), none, 1},
        {"upper case behind lower", Solid(facet) + Upper(Solid(facet)), 1, 2},
        {"several solids", Solid(facet) + Solid(facet + facet) + "solid\nendsolid\n" + Solid(facet), none, 4},
        {"names with the words of a facet", "solid facet vertex\n" + facet + "endsolid facet loop\n" + Solid(facet),
         none, 2},
        {"no end", "solid\n" + facet, 1, 1},
        {"no beginning", facet, none, 1},
        {"Macintosh line ends", Replaced(Solid(facet + facet), "\n", "\r"), 0, 2},
        {"Windows line ends", Replaced(Solid(facet + facet), "\n", "\r\n"), 2, 2},
        {"one line", "solid name " + line + line + "endsolid name", 0, 2},
        {"facets on the line of a second solid", Solid(facet) + "solid name " + line + "endsolid", none, 2},
        {"capitals on the line of a second solid", Solid(facet) + "solid name " + Upper(line) + "endsolid", 1, 2},
        {"a quad", Solid(quad + facet), none, 3},
        {"two corners", Solid(Replaced(facet, "      vertex 0 1 0\n", "") + facet), none, 1},
        {"no normal", Solid(Replaced(facet, " normal 0 0 1", "")), none, 1},
        {"normal without its word", Solid(Replaced(facet, " normal", "")), none, 1},
        {"normal with two numbers", Solid(Replaced(facet, "0 0 1\n    outer", "0 0\n    outer")), none, 1},
        {"normal is not a number", Solid(Replaced(facet, "0 0 1\n    outer", "nan -nan inf\n    outer")), 1, 1},
        {"normal of a C runtime", Solid(Replaced(facet, "0 0 1\n    outer", "-1.#IND 1.#QNAN 0\n    outer")), none, 1},
        {"normal is zero", Solid(Replaced(facet, "0 0 1\n    outer", "0 -0 0.0\n    outer")), 1, 1},
        {"corner is not a number", Solid(Replaced(facet, "1 0 0", "1 nan 0") + facet), 2, 1},
        {"corner is infinite", Solid(facet + Replaced(facet, "1 0 0", "1e40 0 0")), 2, 1},
        {"corner of a C runtime", Solid(Replaced(facet, "1 0 0", "1.#INF 0 0") + facet), none, 1},
        {"corner lacks a number", Solid(Replaced(facet, "1 0 0", "1 0") + facet), none, 1},
        {"corner has too many numbers", Solid(Replaced(facet, "1 0 0", "1 0 0 9 9 9")), none, 1},
        {"no vertex words", Solid(Replaced(facet, "vertex ", "")), none, 1},
        {"no loop words", Solid(Replaced(Replaced(facet, "outer loop", ""), "endloop", "")), none, 1},
        {"no end words", Solid(Replaced(Replaced(facet, "endloop", ""), "endfacet", "") + facet), 2, 2},
        {"no facet words", Solid(Replaced(Replaced(facet, "endfacet", ""), "facet", "") + facet), none, 2},
        {"two loops",
         Solid(Replaced(facet, "endloop", "endloop outer loop vertex 0 0 1 vertex 1 0 1 vertex 0 1 1 endloop")), 1, 2},
        {"comments", Solid("# a comment with a facet\n" + facet), none, 1},
        {"decimal commas", Solid(Replaced(facet, "1 0 0", "1,5 0 0")), none, 1},
        {"cut in a facet", Solid(facet + facet).substr(0, 200), none, 1},
        {"NUL between facets", Solid(facet + std::string(3, '\0') + facet), none, 2},
        {"only unusable facets", Solid(Replaced(facet, "1 0 0", "nan 0 0")), 1, none},
        {"no facets", "solid\nendsolid\n", 0, 0},
        {"no facets in capitals", "\nSOLID A\nENDSOLID A\n", none, 0},
        {"a text that begins so", "solid modelling is fun,\nespecially on Sundays.\n", 0, none},
        {"another text", std::string(500, 'x') + " 1.0 2.0 3.0\n", none, none},
        {"UTF-16", Utf16(Solid(facet)), none, none},
        {"UTF-8 mark alone", bom, none, none},
        {"nothing", "", none, none},
        {"blanks", std::string(200, ' '), none, none},
    });
}

TEST(StlTolerant, BinariesOfTheWild) {
    const Record unit = UnitRecord();
    const std::vector<Record> three = {unit, unit, unit};
    Record blank = unit;
    blank[2] = 0.0F;
    Record lost = unit;
    lost[5] = std::numeric_limits<float>::quiet_NaN();
    std::string half = BinaryText(3, three);
    half.resize(half.size() - 20);
    std::string noise = "STL?";
    for (unsigned int i = 0; noise.size() < 5000; ++i) {
        noise += static_cast<char>(i * 2654435761U >> 13U);
    }
    Check({
        {"as it should be", BinaryText(3, three), 3, 3},
        {"header of a text", BinaryText(3, three, "solid part"), 0, 3},
        {"header of a text and a count too large", BinaryText(30, three, "solid part"), 0, 3},
        {"header in capitals", BinaryText(3, three, "SOLID part"), 3, 3},
        {"last attribute missing", BinaryText(3, three, "solid").substr(0, 84 + 148), 0, 3},
        {"count too large", BinaryText(7, three), none, 3},
        {"count larger than any file", BinaryText(0xFFFFFFFFU, three), none, 3},
        {"count never filled in", BinaryText(0, three), 0, 3},
        {"count too small", BinaryText(2, three), 2, 2},
        {"cut within a record", half, none, 2},
        {"blank normal", BinaryText(2, {blank, unit}), 2, 2},
        {"corner is not a number", BinaryText(3, {unit, lost, unit}), 3, 2},
        {"only unusable facets", BinaryText(1, {lost}), 1, none},
        {"no triangles", BinaryText(0, {}), 0, 0},
        {"no triangles and a line end", BinaryText(0, {}) + "\n", 0, 0},
        {"zeros", std::string(5000, '\0'), 0, none},
        {"noise", noise, none, none},
    });
}

// Where the strict reader has an answer, the tolerant one has the same, however it came by it.
TEST(StlTolerant, AgreesWithTheStrictReaderOnSoundFiles) {
    const Directory directory;
    std::string facets;
    std::vector<Record> records;
    for (int i = 0; i < 5000; ++i) {
        const std::string x = std::to_string(i);
        facets += FacetText("0 0 1", x + " 0 0", "1 " + x + ".5 0", "0 1 -1e-" + std::to_string(i % 40));
        records.push_back(UnitRecord());
        records.back()[4] = static_cast<float>(i);
    }
    for (const std::string& contents : {Solid(facets), BinaryText(5000, records)}) {
        const std::string path = directory.Write(contents);
        const Outcome strict = OutcomeOf(MeshReader::ReadSTL, path);
        ASSERT_EQ(strict.Triangles(), 5000U);
        EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLTolerant, path), strict);
    }
    // The same facets by the forgiving way, because of a word that has no business there.
    const Outcome strict = OutcomeOf(MeshReader::ReadSTL, directory.Write(Solid(facets)));
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLTolerant, directory.Write("solid\n" + facets + "stray\n")), strict);
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLTolerant, directory.Write(Upper(Solid(facets)))), strict);
}

TEST(StlTolerant, CutsPolygonsIntoFansAndComputesNormals) {
    const Directory directory;
    const std::string pentagon = "FACET NORMAL 0 0 0 OUTER LOOP VERTEX 0 0 0 VERTEX 2 0 0 VERTEX 3 1 0 VERTEX 2 2 0 "
                                 "VERTEX 0 2 0 ENDLOOP ENDFACET ";
    const std::string broken =
        "FACET OUTER LOOP VERTEX 0 0 0 VERTEX 2 0 0 VERTEX 3 1 0 VERTEX 2 NAN 0 ENDLOOP ENDFACET ";
    const std::string flat = "FACET NORMAL 0 0 0 OUTER LOOP VERTEX 0 0 0 VERTEX 1 1 1 VERTEX 2 2 2 ENDLOOP ENDFACET ";
    const std::string tiny =
        "FACET NORMAL 0 0 0 OUTER LOOP VERTEX 0 0 0 VERTEX 0 0 1e-30 VERTEX 0 1e-30 0 ENDLOOP ENDFACET ";
    const std::string path = directory.Write("SOLID " + pentagon + broken + flat + tiny + "ENDSOLID");
    const Outcome outcome = OutcomeOf(MeshReader::ReadSTLTolerant, path);
    ASSERT_EQ(outcome.Triangles(), 5U); // three of the pentagon, none of the one with a lost corner
    const Vector3f corners[] = {{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(outcome.Corner(i, 0), corners[0]);
        EXPECT_EQ(outcome.Corner(i, 1), corners[i + 1]);
        EXPECT_EQ(outcome.Corner(i, 2), corners[i + 2]);
        EXPECT_EQ(outcome.Normal(i), Vector3f(0, 0, 1));
    }
    EXPECT_EQ(outcome.Normal(3), Vector3f(0, 0, 0)); // no area, no direction
    EXPECT_EQ(outcome.Normal(4), Vector3f(-1, 0, 0));
    EXPECT_EQ(outcome.Vector(0), Vector3f(0, 0, 0));
    EXPECT_EQ(outcome.Vector(3), Vector3f(3, 2, 2)); // the box of what is there, not of what was left out

    // Binary blanks are computed as well.
    Record record = UnitRecord();
    record[2] = 0.0F;
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLTolerant, directory.Write(BinaryText(1, {record}))).Normal(0),
              Vector3f(0, 0, 1));
}

} // namespace
