// REK volumes in the tool, and raw samples on their way to them.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <Quorvex/volume/VolumeReader.h>
#include <shared/VolumeSummary.h>

#include "Programs.h"

namespace testing_cli {
namespace {

using KOVA::Quorvex::VolumeData;
using testing::ElementsAre;
using testing::HasSubstr;

template <class Sample> std::string WriteRaw(const std::string& path, const std::vector<Sample>& samples) {
    return WriteText(path, {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(Sample)});
}

std::vector<int> VoxelsOf(const std::string& path) {
    const KOVA::Quorvex::Volume volume = KOVA::Quorvex::VolumeReader::ReadREK(path.c_str());
    const VolumeData& data = volume.GetData();
    return {data.getDataPtr(), data.getDataPtr() + data.getDimX() * data.getDimY() * data.getDimZ()};
}

TEST(VolumesTest, RawSamplesOfEveryKindAreImported) {
    const Folder folder;
    const std::string rek = folder.Path("a.rek");
    const auto import = [&](const std::string& raw, const std::string& type, const std::string& range = {}) {
        std::vector<std::string> arguments{"import", raw, "--dims", "2x1x3", "--type", type, "-o", rek};
        if (!range.empty()) {
            arguments.insert(arguments.end(), {"--range", range});
        }
        const Outcome outcome = Quorvex(arguments);
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(outcome.out + outcome.err, "");
        return VoxelsOf(rek);
    };
    const std::string raw = folder.Path("a.raw");
    EXPECT_THAT(import(WriteRaw<std::uint8_t>(raw, {1, 2, 3, 4, 5, 6}), "u8"), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(import(WriteRaw<std::uint16_t>(raw, {0x1FF, 0x200, 0x3AA, 0x400, 0x500, 0xFFFF}), "u16"),
                ElementsAre(1, 2, 3, 4, 5, 255));
    EXPECT_THAT(import(WriteRaw<std::uint16_t>(raw, {0, 100, 132, 2048, 4095, 5000}), "u16", "100,4195"),
                ElementsAre(0, 0, 2, 121, 249, 255));
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    WriteRaw<float>(raw, {-1, 0, 1, 2, 3, nan});
    EXPECT_THAT(import(raw, "f32"), ElementsAre(0, 63, 127, 191, 255, 0));
    EXPECT_THAT(import(raw, "f32", "-1,7"), ElementsAre(0, 31, 63, 95, 127, 0));
    EXPECT_THAT(import(WriteRaw<float>(raw, {8e9F, 8e9F, 8e9F, 8e9F, 8e9F, 8e9F}), "f32"),
                ElementsAre(0, 0, 0, 0, 0, 0));
    EXPECT_THAT(folder.Names(), ElementsAre("a.raw", "a.rek"));
}

TEST(VolumesTest, WhatCannotBeImportedLeavesWhatWasThere) {
    const Folder folder;
    const std::string raw = WriteText(folder.Path("a.raw"), "abcdef");
    const std::string rek = WriteText(folder.Path("a.rek"), "before");
    const auto cases = std::vector<std::tuple<std::vector<std::string>, int, std::string>>{
        {{raw, "--dims", "2x1x3", "--type", "u16"}, 1, "a.raw' holds 6 bytes, but the samples take 12"},
        {{raw, "--dims", "5x1x1", "--type", "u8"}, 1, "holds 6 bytes"},
        {{folder.Path("none"), "--dims", "6x1x1", "--type", "u8"}, 1, "none': No such file"},
        {{folder.Path(""), "--dims", "6x1x1", "--type", "u8"}, 1, "folder"},
        {{raw, "--dims", "6x1", "--type", "u8"}, 2, "--dims"},
        {{raw, "--dims", "6x1x0", "--type", "u8"}, 2, "--dims"},
        {{raw, "--dims", "6x1x32768", "--type", "u8"}, 2, "--dims"},
        {{raw, "--dims", "6x1x1x1", "--type", "u8"}, 2, "--dims"},
        {{raw, "--dims", "6x1x1", "--type", "u12"}, 2, "'u12' is none of u8, u16, f32"},
        {{raw, "--dims", "6x1x1", "--type", "u8", "--range", "0,1"}, 2, "--range"},
        {{raw, "--dims", "1x1x1", "--type", "f32", "--range", "1,1"}, 2, "--range"},
        {{raw, "--dims", "1x1x1", "--type", "f32", "--range", "-3e38,3e38"}, 2, "--range"},
        {{raw, "--dims", "6x1x1"}, 2, "--type"}};
    for (const auto& [arguments, code, about] : cases) {
        std::vector<std::string> all{"import", "-o", rek};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Outcome outcome = Quorvex(all);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr(about));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(Quorvex({"import", raw, "--dims", "6x1x1", "--type", "u8", "-o", folder.Path("none/a.rek")}).code, 1);
    EXPECT_EQ(std::filesystem::file_size(rek), 6U);
    EXPECT_THAT(folder.Names(), ElementsAre("a.raw", "a.rek"));
}

TEST(VolumesTest, FactsAboutVolumesAndDamagedOnes) {
    const Folder folder;
    const std::string raw =
        WriteText(folder.Path("a.raw"), std::string(60, '\x0A') + std::string(30, '\xC8') + "\x14\xC6");
    const std::string rek = folder.Path("scan.REK");
    ASSERT_EQ(Quorvex({"import", raw, "--dims", "46x2x1", "--type", "u8", "-o", rek}).code, 0);
    const Outcome outcome = Quorvex({"info", "--json", rek});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const nlohmann::json facts = nlohmann::json::parse(outcome.out).at(0);
    EXPECT_EQ(facts.at("samples"), "8-bit");
    EXPECT_EQ(facts.at("dimensions"), (nlohmann::json{46, 2, 1}));
    EXPECT_EQ(facts.at("bricks"), 2);
    EXPECT_EQ(facts.at("file_size"), 2048 + 92);
    EXPECT_EQ(facts.at("min"), 10);
    EXPECT_EQ(facts.at("max"), 200);
    EXPECT_EQ(facts.at("air"), 10);
    EXPECT_EQ(facts.at("material"), 200);
    EXPECT_NEAR(facts.at("material_share").get<double>(), 31.0 / 92.0, 1e-9);
    EXPECT_EQ(facts.at("histogram").at(200), 30);
    EXPECT_THAT(Quorvex({"info", rek}).out, HasSubstr("REK volume"));

    std::string bytes(2048 + 8, '\0');
    bytes[0] = bytes[2] = bytes[6] = 2;
    const auto writeBits = [&](const std::string& name, char bits) {
        bytes[4] = bits;
        return WriteText(folder.Path(name), bytes);
    };
    for (const auto& [path, about] : std::vector<std::pair<std::string, std::string>>{
             {writeBits("kind.rek", 32), "it says it has 32 bits a voxel"},
             {writeBits("short.rek", 16), "it says it holds 2 x 2 x 2 samples of 2 bytes, but is 2056 bytes long"},
             {WriteText(folder.Path("tiny.rek"), "x"), "too short"},
             {WriteText(folder.Path("empty.rek"), ""), "the file is empty"},
             {WriteText(folder.Path("none.rek"), std::string(4, '\0') + '\x08' + std::string(2043, '\0')), "no voxels"},
             {folder.Path("missing.rek"), "No such file"}}) {
        const Outcome failed = Quorvex({"info", path});
        EXPECT_EQ(failed.code, 1);
        EXPECT_THAT(failed.err, HasSubstr(about));
        EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << failed.err;
    }
}

// The threshold that parts two bells best lies between them.
TEST(VolumesTest, AirAndMaterialAreToldApart) {
    std::vector<unsigned char> voxels;
    for (int level = 0; level < 256; ++level) {
        const int air = 900 - 30 * std::abs(level - 40);
        const int material = 500 - 10 * std::abs(level - 170);
        voxels.insert(voxels.end(), static_cast<std::size_t>(std::max({air, material, 0})),
                      static_cast<unsigned char>(level));
    }
    const VolumeData data(voxels.size(), 1, 1, {voxels.data()}, {0});
    const auto summary = KOVA::Quorvex::cli::Summarize(data);
    ASSERT_TRUE(summary.parts);
    EXPECT_EQ(summary.parts->air, 40);
    EXPECT_EQ(summary.parts->material, 170);
    EXPECT_EQ(summary.parts->threshold, (69 + 120) / 2); // the middle of the gap
    EXPECT_FALSE(KOVA::Quorvex::cli::Summarize(VolumeData(1, 1, 1, {voxels.data()}, {0})).parts);
}

} // namespace
} // namespace testing_cli
