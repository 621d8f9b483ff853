// Lunkers and histograms in the tool.

#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <Quorvex/mesh/MeshReader.h>
#include <cli/PlotAxis.h>
#include <cli/StrokeFont.h>

#include "Programs.h"

namespace testing_cli {
namespace {

using KOVA::Quorvex::MeshReader;
using testing::ElementsAre;
using testing::HasSubstr;

// A REK volume of one-byte voxels.
std::string WriteRek(const std::string& path, int x, int y, int z, const std::string& voxels) {
    std::string bytes(2048, '\0');
    for (const auto& [offset, value] : {std::pair(0, x), std::pair(2, y), std::pair(6, z), std::pair(4, 8)}) {
        bytes[static_cast<std::size_t>(offset)] = static_cast<char>(value);
    }
    return WriteText(path, bytes + voxels); // slices in reversed order
}

TEST(AnalysisTest, LunkersAreListedAndWritten) {
    const Folder folder;
    std::string voxels(20 * 10 * 5, '\x64');
    const auto at = [](int x, int y, int z) { return static_cast<std::size_t>(((4 - z) * 10 + y) * 20 + x); };
    for (const std::size_t place : {at(15, 7, 3), at(3, 4, 2), at(4, 5, 3)}) {
        voxels[place] = '\xFF';
    }
    const std::string rek = WriteRek(folder.Path("a.rek"), 20, 10, 5, voxels);
    const std::string stl = folder.Path("a.stl");
    const Outcome outcome = Quorvex({"lunker", rek, "-o", stl, "--json"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json found = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(found.at("groups"), 2);
    EXPECT_EQ(found.at("voxels"), 3);
    EXPECT_EQ(found.at("triangles"), 24);
    const nlohmann::json& pair = found.at("lunkers").at(0);
    EXPECT_EQ(pair.at("voxels"), 2);
    EXPECT_EQ(pair.at("box"), nlohmann::json::parse(R"({"min": [3, 4, 2], "max": [4, 5, 3]})"));
    EXPECT_EQ(pair.at("center"), (nlohmann::json{3.5, 4.5, 2.5}));
    EXPECT_EQ(pair.at("triangles"), 16);
    EXPECT_EQ(found.at("lunkers").at(1).at("first_triangle"), 16);
    const KOVA::Quorvex::Mesh mesh = MeshReader::ReadSTL(stl.c_str());
    EXPECT_EQ(mesh.GetData().GetNumVertices(), 72U);
    EXPECT_EQ(mesh.GetBB1(), KOVA::Quorvex::Vector3f(15.5F, 7.5F, 3.5F));
    EXPECT_THAT(Quorvex({"lunker", rek, "-o", stl}).out, HasSubstr("triangles                         24\n"));

    const std::string none = WriteRek(folder.Path("none.rek"), 2, 2, 2, std::string(8, '\xFE'));
    EXPECT_EQ(Quorvex({"lunker", none, "-o", stl}).code, 0);
    EXPECT_EQ(std::filesystem::file_size(stl), 84U);
    EXPECT_EQ(Quorvex({"lunker", rek}).code, 2);
    EXPECT_EQ(Quorvex({"lunker", rek, "-o", folder.Path("no/a.stl")}).code, 1);
    EXPECT_EQ(Quorvex({"lunker", folder.Path("no.rek"), "-o", stl}).code, 1);
    EXPECT_THAT(folder.Names(), ElementsAre("a.rek", "a.stl", "none.rek"));
}

TEST(AnalysisTest, TheSamplesPoresAreFound) {
    const Folder folder;
    const Outcome outcome = Quorvex({"lunker", QUORVEX_VOLUME_SAMPLE, "-o", folder.Path("a.stl"), "--json"});
    EXPECT_EQ(nlohmann::json::parse(outcome.out).at("groups"), 24); // as many as were marked
}

TEST(AnalysisTest, CountsPeaksAndThresholds) {
    const Folder folder;
    std::string voxels;
    for (int level = 0; level < 256; ++level) {
        const int count = std::max({0, 90 - 9 * std::abs(level - 50), 45 - 3 * std::abs(level - 150)});
        voxels.append(static_cast<std::size_t>(count), static_cast<char>(level));
    }
    voxels.resize(40 * 10 * 5, '\x32');
    const std::string rek = WriteRek(folder.Path("a.rek"), 40, 10, 5, voxels);
    const Outcome outcome = Quorvex({"histogram", rek, "--json", "--median", "5"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json facts = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(facts.at("voxels"), 2000);
    EXPECT_EQ(facts.at("bins").at(150), 45);
    EXPECT_EQ(facts.at("filtered_bins").at(150), 42); // the middle of 39, 42, 45, 42, 39
    EXPECT_EQ(facts.at("peaks").size(), 2U);
    EXPECT_EQ(facts.at("background_peak"), 50);
    EXPECT_EQ(facts.at("material_peak"), 150);
    EXPECT_EQ(facts.at("threshold_between_peaks"), 100);
    EXPECT_NEAR(facts.at("threshold_by_variance").get<int>(), 97, 5); // the middle of the gap

    const Outcome table = Quorvex({"histogram", rek, "--csv"});
    std::istringstream lines(table.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "intensity,voxels");
    int sum = 0;
    int count = 0;
    for (; std::getline(lines, line); ++count) {
        EXPECT_EQ(std::stoi(line), count);
        sum += std::stoi(line.substr(line.find(',') + 1));
    }
    EXPECT_EQ(count, 256);
    EXPECT_EQ(sum, 2000);
    EXPECT_THAT(Quorvex({"histogram", rek, "--csv", "--median", "3"}).out, HasSubstr("\n150,45,42\n"));
    EXPECT_THAT(Quorvex({"histogram", rek}).out, HasSubstr("threshold half-way                 100\n"));
    EXPECT_EQ(Quorvex({"histogram", rek, "--csv", "--json"}).code, 2);
    EXPECT_EQ(Quorvex({"histogram", rek, "--median", "0"}).code, 2);
    EXPECT_EQ(Quorvex({"histogram", rek, "--plot", folder.Path("no/a.png")}).code, 1);
    const std::string same = WriteRek(folder.Path("same.rek"), 3, 1, 1, "\x07\x07\x07");
    const nlohmann::json alike = nlohmann::json::parse(Quorvex({"histogram", same, "--json"}).out);
    EXPECT_TRUE(alike.at("threshold_between_peaks").is_null() && alike.at("threshold_by_variance").is_null());
}

TEST(AnalysisTest, ThePlotShowsTheCounts) {
    const Folder folder;
    const std::string rek = WriteRek(folder.Path("a.rek"), 10, 111, 1,
                                     std::string(10, '\x14') + std::string(100, '\x64') + std::string(1000, '\xC8'));
    const std::string png = folder.Path("a.png");
    ASSERT_EQ(Quorvex({"histogram", rek, "--plot", png}).code, 0);
    const Picture picture = ReadPicture(png);
    const auto isBar = [](const Pixel& p) { return p.b > p.r + 60 && p.b < 200; };
    // Heights of the bars of a level, in the upper and in the lower panel.
    const auto heights = [&](int level) {
        const int x = 190 + 5 * level + 2;
        std::pair<int, int> found(0, 0);
        for (int y = 0; y < picture.height; ++y) {
            const bool bar = isBar(picture.At(x, y));
            (y < picture.height / 2 ? found.first : found.second) += bar ? 1 : 0;
        }
        return found;
    };
    const auto [few, fewLog] = heights(20);
    const auto [some, someLog] = heights(100);
    const auto [many, manyLog] = heights(200);
    EXPECT_GT(many, 300);
    EXPECT_NEAR(some, many / 10.0, 2.0);
    EXPECT_NEAR(few, many / 100.0, 2.0);
    EXPECT_GT(fewLog, 50);
    EXPECT_NEAR(manyLog - someLog, someLog - fewLog, 3.0);                // a decade each
    EXPECT_NEAR(someLog - fewLog, fewLog / (1.0 + std::log10(2.0)), 3.0); // from one half on
    EXPECT_EQ(heights(60), std::pair(0, 0));
    ASSERT_EQ(Quorvex({"histogram", rek, "--plot", png, "--plot-width", "800"}).code, 0);
    EXPECT_EQ(ReadPicture(png).height, 620);
    // The threshold that parts two kinds, a line from above the panel down to its foot.
    const Spot green = Find(picture, [](const Pixel& p) { return p.g > p.r + 60 && p.g > p.b + 20; });
    EXPECT_GT(green.Height(), picture.height / 2);
    EXPECT_LT(green.left, 190 + 5 * 200);
    EXPECT_GT(green.left, 190 + 5 * 20);
}

TEST(PlotTest, AxesCoverTheirCountsWithRoundSteps) {
    using KOVA::Quorvex::cli::CountAxis;
    for (double largest = 1.0; largest < 1e13; largest *= 1.7) {
        for (const bool logarithmic : {false, true}) {
            const CountAxis axis(largest, logarithmic);
            EXPECT_LE(axis.At(largest), 1.0) << largest;
            EXPECT_GT(axis.At(largest), logarithmic ? 0.2 : 0.9) << largest;
            EXPECT_LE(axis.At(0.0), 0.0);
            EXPECT_GE(axis.At(1.0), 0.0);
            int labels = 0;
            double before = -1.0;
            for (const auto& tick : axis.Ticks()) {
                labels += tick.labelled ? 1 : 0;
                EXPECT_GT(tick.value, before);
                EXPECT_LE(axis.At(tick.value), 1.0 + 1e-9);
                before = tick.value;
            }
            EXPECT_GE(labels, 2) << largest << logarithmic;
            EXPECT_LE(labels, 12) << largest << logarithmic;
        }
    }
    EXPECT_EQ(KOVA::Quorvex::cli::ShortCount(250), "250");
    EXPECT_EQ(KOVA::Quorvex::cli::ShortCount(1500000), "1.5 M");
    EXPECT_EQ(KOVA::Quorvex::cli::LongCount(12), "12");
    EXPECT_EQ(KOVA::Quorvex::cli::LongCount(1234567), "1 234 567");
}

TEST(PlotTest, EveryCharacterHasAShapeOfItsOwnInsideItsWidth) {
    using namespace KOVA::Quorvex::cli;
    std::set<std::string> shapes;
    for (char c = '!'; c <= '~'; ++c) {
        const std::string text(1, c);
        std::ostringstream shape;
        for (const Polyline& line : TextLines(text, 14.0)) {
            ASSERT_GE(line.size(), 2U) << c;
            for (const PlotPoint& p : line) {
                shape << p.x << ',' << p.y << ' ';
                EXPECT_GE(p.x, -0.1) << c;
                EXPECT_LE(p.x, 14.0 * TextWidth(text) + 0.1) << c;
                EXPECT_LE(std::abs(p.y + 6.0), 10.1) << c;
            }
        }
        EXPECT_TRUE(shapes.insert(shape.str()).second) << c;
    }
    EXPECT_EQ(TextLines("\xC3\xA9", 14.0).size(), 1U); // one box
    EXPECT_EQ(TextWidth(""), 0.0);
}

} // namespace
} // namespace testing_cli
