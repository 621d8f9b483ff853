// The program as scripts see it: exit codes, what goes to which stream, and what is left behind.

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "Programs.h"

namespace testing_cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

void ExpectOneLine(const Outcome& outcome, int code, const std::string& about) {
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, StartsWith("quorvex: "));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(outcome.err.back(), '\n');
    EXPECT_THAT(outcome.err, HasSubstr(about));
}

TEST(UsageTest, WrongUsageIsTwoAndOneLine) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    const std::string png = folder.Path("a.png");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "info, render, turntable, import, histogram, lunker, codecs or capabilities"},
        {{"rendre", stl}, "rendre"},
        {{"info"}, "FILE"},
        {{"info", stl, "--xml"}, "--xml"},
        {{"render", stl}, "--output"},
        {{"render", "-o", png}, "FILE"},
        {{"render", stl, "-o", folder.Path("a.jpg")}, "a.jpg"},
        {{"render", stl, "-o", folder.Path("a.bmp"), "--size", "802x600"}, "multiple of 4"},
        {{"render", stl, "-o", png, "--size", "0x600"}, "--size"},
        {{"render", stl, "-o", png, "--view", "above"}, "'above' is none of front, back"},
        {{"render", stl, "-o", png, "--projection", "fish"}, "--projection"},
        {{"render", stl, "-o", png, "--fov", "180"}, "--fov"},
        {{"render", stl, "-o", png, "--antialias", "nan"}, "--antialias"},
        {{"render", stl, "-o", png, "--background", "blue"}, "--background"},
        {{"render", stl, "-o", png, "--mesh-mode", "solid"}, "--mesh-mode"},
        {{"turntable", stl, "-o", png}, "does not end in .avi"},
        {{"turntable", stl, "-o", folder.Path("a.avi"), "--size", "640x482"}, "multiples of 4"},
        {{"turntable", stl, "-o", folder.Path("a.avi"), "--frames", "0"}, "--frames"},
        {{"turntable", stl, "-o", folder.Path("a.avi"), "--frames", "2.5"}, "whole"},
        {{"turntable", stl, "-o", folder.Path("a.avi"), "--axis", "0,0,0"}, "--axis"},
        {{"turntable", stl, "-o", folder.Path("a.avi"), "--codec", "MJPEG"}, "'MJPEG' is no code"},
        {{"capabilities", "more"}, "more"}};
    for (const auto& [arguments, about] : cases) {
        ExpectOneLine(Quorvex(arguments), 2, about);
    }
    EXPECT_THAT(folder.Names(), ElementsAre("a.stl"));
}

TEST(UsageTest, FilesThatCannotBeReadAreOneAndOneLine) {
    const Folder folder;
    const std::string good = WriteBinary(folder.Path("good.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    const std::vector<std::pair<std::string, std::string>> cases{
        {folder.Path("missing.stl"), "missing.stl': No such file"},
        {folder.Path(""), "folder"},
        {WriteText(folder.Path("empty.stl"), ""), "empty.stl': the file is empty"},
        {WriteText(folder.Path("noise.stl"), std::string(200, '\x7f')), "noise.stl': there are no triangles"},
        {WriteText(folder.Path("two\nlines.stl"), ""), "two lines.stl"}};
    for (const auto& [path, about] : cases) {
        ExpectOneLine(Quorvex({"info", good, path}), 1, about);
        ExpectOneLine(Quorvex({"render", good, path, "-o", folder.Path("out.png")}), 1, about);
    }
    const std::string faceless = WriteText(folder.Path("faceless.stl"), "solid nothing\nendsolid nothing\n");
    ExpectOneLine(Quorvex({"render", faceless, "-o", folder.Path("out.png")}), 1, "faceless.stl");
    EXPECT_FALSE(std::filesystem::exists(folder.Path("out.png")));
}

TEST(UsageTest, PicturesThatCannotBeWrittenLeaveNothingBehind) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    std::filesystem::create_directory(folder.Path("folder.png"));
    for (const std::string ending : {".png", ".bmp"}) {
        ExpectOneLine(Quorvex({"render", stl, "-o", folder.Path("none/a" + ending)}), 1, "No such file");
        const std::string full = folder.Path("full" + ending);
        std::filesystem::create_symlink("/dev/full", full);
        ExpectOneLine(Quorvex({"render", stl, "-o", full}), 1, "full" + ending);
    }
    ExpectOneLine(Quorvex({"render", stl, "-o", folder.Path("folder.png")}), 1, "folder.png");
    EXPECT_THAT(folder.Names(), ElementsAre("a.stl", "folder.png", "full.bmp", "full.png"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));

    const Outcome full = RunProgram(QUORVEX_TOOL, {"info", stl}, "/dev/full");
    EXPECT_EQ(full.code, 1);
    EXPECT_THAT(full.err, HasSubstr("standard output"));
}

TEST(UsageTest, AFolderWithoutPermissionIsReported) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    std::filesystem::create_directory(folder.Path("closed"));
    std::filesystem::permissions(folder.Path("closed"), std::filesystem::perms::owner_read);
    for (const std::string picture : {"closed/a.png", "closed/a.bmp"}) {
        // Everything is permitted to root, unless that is taken from the program.
        const Outcome outcome =
            ::geteuid() == 0 ? RunProgram("/usr/bin/setpriv", {"--bounding-set=-dac_override,-dac_read_search",
                                                               QUORVEX_TOOL, "render", stl, "-o", folder.Path(picture)})
                             : Quorvex({"render", stl, "-o", folder.Path(picture)});
        ExpectOneLine(outcome, 1, "Permission denied");
    }
}

TEST(UsageTest, APictureReplacesTheFileBehindALinkAndOnlyWhenItIsComplete) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    for (const std::string ending : {".png", ".bmp"}) {
        const std::string old = WriteText(folder.Path("old" + ending), "what was here before");
        EXPECT_EQ(Quorvex({"render", folder.Path("missing.stl"), "-o", old}).code, 1);
        EXPECT_EQ(std::filesystem::file_size(old), 20U);
        std::filesystem::create_symlink("old" + ending, folder.Path("link" + ending));
        EXPECT_EQ(Quorvex({"render", stl, "-o", folder.Path("link" + ending), "--size", "80x60"}).code, 0);
        EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link" + ending)));
        EXPECT_EQ(ReadPicture(old).width, 80);
    }
    EXPECT_THAT(folder.Names(), ElementsAre("a.stl", "link.bmp", "link.png", "old.bmp", "old.png"));
}

TEST(UsageTest, HelpAndVersionAreResults) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{}, {"info"}, {"render"}, {"turntable"}, {"codecs"}, {"capabilities"}}) {
        std::vector<std::string> arguments = command;
        arguments.emplace_back("--help");
        const Outcome help = Quorvex(arguments);
        EXPECT_EQ(help.code, 0);
        EXPECT_EQ(help.err, "");
        EXPECT_THAT(help.out, HasSubstr("Examples:\n  quorvex " + (command.empty() ? "info" : command[0])));
    }
    const Outcome version = Quorvex({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_THAT(version.out, testing::MatchesRegex("quorvex [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(InfoTest, JsonHoldsTheFactsAsNumbers) {
    const Folder folder;
    const std::vector<Triangle> box = BoxSurface({-1, 0.1F, 2}, {3, 5.5F, 7});
    const std::string ascii = WriteAscii(folder.Path("a.stl"), box);
    const std::string binary = WriteBinary(folder.Path("b.stl"), box);
    const Outcome outcome = Quorvex({"info", "--json", ascii, binary});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json list = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0]["format"], "ascii");
    EXPECT_EQ(list[1]["format"], "binary");
    EXPECT_EQ(list[1]["file"], binary);
    EXPECT_EQ(list[1]["file_size"], 84 + 50 * 12);
    for (const nlohmann::json& file : list) {
        EXPECT_EQ(file["triangles"], 12);
        EXPECT_EQ(file["vertices"], 36);
        EXPECT_EQ(file["box"]["min"], nlohmann::json({-1, 0.1, 2}));
        EXPECT_EQ(file["box"]["max"], nlohmann::json({3, 5.5, 7}));
        EXPECT_EQ(file["size"], nlohmann::json({4, 5.4, 5}));
        EXPECT_EQ(file["center"], nlohmann::json({1, 2.8, 4.5}));
        EXPECT_EQ(file["degenerate_triangles"], 0);
        EXPECT_EQ(file["inverted_normals"], 0);
    }
}

TEST(InfoTest, WhatIsNotFiniteIsNull) {
    const Folder folder;
    const std::string huge = WriteBinary(folder.Path("huge.stl"), {{{{-3e38F, 0, 0}, {3e38F, 0, 0}, {0, 3e38F, 0}}}});
    const Outcome outcome = Quorvex({"info", "--json", huge});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json file = nlohmann::json::parse(outcome.out)[0];
    EXPECT_TRUE(file["size"][0].is_null()) << file;
    EXPECT_EQ(file["size"][2], 0);
    EXPECT_EQ(file["box"]["max"][0].get<float>(), 3e38F);
}

TEST(InfoTest, ABinaryFileWhoseHeaderBeginsWithSolidIsBinary) {
    const Folder folder;
    const std::string path = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 2, 3}));
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary) << "solid exported by something";
    const Outcome outcome = Quorvex({"info", path});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, testing::ContainsRegex("format +binary STL\n"));
    EXPECT_THAT(outcome.out, testing::ContainsRegex("triangles +12\n"));
    EXPECT_THAT(outcome.out, testing::ContainsRegex("box maximum +1 +2 +3\n"));
}

TEST(CapabilitiesTest, TellsWhatTheDriverOffers) {
    const Outcome outcome = Quorvex({"capabilities", "--json"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json all = nlohmann::json::parse(outcome.out);
    unsigned int bits = 0;
    for (const nlohmann::json& capability : all["capabilities"]) {
        bits |= capability["available"].get<bool>() ? capability["bit"].get<unsigned int>() : 0U;
    }
    EXPECT_EQ(all["capability_bits"], bits);
    EXPECT_EQ(bits & 1U, all["extensions"]["GL_EXT_framebuffer_object"].get<bool>() ? 1U : 0U);
    EXPECT_GE(all["opengl"]["max_texture_size"], 64);
    EXPECT_FALSE(all["opengl"]["version"].get<std::string>().empty());
    const Outcome text = Quorvex({"capabilities"});
    EXPECT_EQ(text.code, 0);
    EXPECT_THAT(text.out, HasSubstr(all["opengl"]["renderer"].get<std::string>()));
}

} // namespace
} // namespace testing_cli
