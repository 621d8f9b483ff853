// Volumes in the tool: their options, the transfer function that it makes, and what its pictures show.

#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cli/RenderOptions.h>
#include <shared/Failure.h>

#include "Programs.h"

namespace testing_cli {
namespace {

using namespace KOVA::Quorvex;
using namespace KOVA::Quorvex::cli;
using testing::HasSubstr;

TEST(VolumeOptionsTest, PlanesAndWindows) {
    EXPECT_EQ(ParsePlane("-1,0.5,2e-1,0"), Vector4d(-1, 0.5, 0.2, 0));
    for (const char* wrong : {"", "1,2,3", "1,2,3,4,5", "0,0,0,1", "1,,2,3", "1,2,3,x", "inf,0,0,1", "1, 2,3,4"}) {
        EXPECT_THROW(ParsePlane(wrong), std::invalid_argument) << wrong;
    }
    EXPECT_EQ(ParseWindow("0,255").high, 255);
    EXPECT_EQ(ParseWindow("7,7").low, 7);
    for (const char* wrong : {"", "5", "9,8", "-1,8", "0,256", "1,2,3", "a,b", "1.5,3"}) {
        EXPECT_THROW(ParseWindow(wrong), std::invalid_argument) << wrong;
    }
}

TEST(TransferFunctionTest, AirIsTransparentAndMaterialIsNot) {
    for (const auto& [air, threshold, material, high] :
         {std::tuple{14, 73, 138, 255}, {0, 30, 59, 200}, {4, 5, 6, 6}, {200, 220, 250, 255}}) {
        VolumeSummary summary;
        summary.voxels = 1000;
        summary.histogram[static_cast<std::size_t>(air)] = 800;
        summary.histogram[static_cast<std::size_t>(material)] = 200;
        summary.low = air;
        summary.high = high;
        summary.parts = VolumeSummary::Parts{threshold, air, material, 0.2};
        for (unsigned int mode = 0; mode < 4; ++mode) {
            SCOPED_TRACE(testing::Message() << material << " in mode " << mode);
            const auto table = DefaultTransferFunction(summary, static_cast<VolumeAttribute::RenderMode>(mode), 256);
            EXPECT_EQ(table[static_cast<std::size_t>(air)].a, 0.0F);
            EXPECT_GT(table[static_cast<std::size_t>(material)].a, mode == VolumeAttribute::Unshaded ? 0.002F : 0.7F);
            for (std::size_t i = 1; i < table.size(); ++i) {
                ASSERT_GE(table[i].a, table[i - 1].a);
                ASSERT_GE(table[i].g, table[i - 1].g);
                ASSERT_LE(std::max({table[i].r, table[i].g, table[i].b, table[i].a}), 1.0F);
            }
            const auto window = WindowTransferFunction({40, 80}, static_cast<VolumeAttribute::RenderMode>(mode), 256);
            for (std::size_t i = 0; i < window.size(); ++i) {
                ASSERT_EQ(window[i].a > 0.0F, i >= 40 && i <= 80) << i;
            }
        }
    }
    VolumeSummary empty;
    empty.voxels = 8;
    empty.histogram[0] = 8;
    EXPECT_EQ(DefaultTransferFunction(empty, VolumeAttribute::Shaded, 2)[0].a, 0.0F);
}

TEST(TransferFunctionTest, FilesOfTheRightFormOnly) {
    const Folder folder;
    std::string good;
    for (int i = 0; i < 256; ++i) {
        good += std::to_string(i);
        good += "e-3\t0.5 1  0.25 \r\n";
    }
    const TransferTable table = ReadTransferFunction(WriteText(folder.Path("good"), good));
    EXPECT_EQ(table[255], ColorRGBA(0.255F, 0.5F, 1, 0.25F));
    const std::string line = "0 0 0 0\n";
    const std::string second = line + "0 0 0 1.1\n";
    for (const auto& [text, about] : {std::pair{good + line, "more than 256"},
                                      {good.substr(good.find('\n') + 1), "255 lines"},
                                      {"0 0 0\n" + good, "intensity 0"},
                                      {second + good, "intensity 1"},
                                      {"0 0 0 nan\n" + good, "intensity 0"},
                                      {"0 0 0 0 0\n" + good, "intensity 0"},
                                      {std::string(), "0 lines"}}) {
        try {
            ReadTransferFunction(WriteText(folder.Path("bad"), text));
            ADD_FAILURE() << about;
        } catch (const Failure& failure) {
            EXPECT_THAT(failure.what(), HasSubstr(about));
        }
    }
    EXPECT_THROW(ReadTransferFunction(folder.Path("none")), Failure);
}

// 40 x 30 x 20 voxels of air with a block from (4, 6, 2) to (31, 17, 13).
std::string WriteBlock(const Folder& folder) {
    std::string voxels;
    for (int i = 0; i < 40 * 30 * 20; ++i) {
        const int x = i % 40;
        const int y = i / 40 % 30;
        const int z = i / 1200;
        const bool inside = x >= 4 && x <= 31 && y >= 6 && y <= 17 && z >= 2 && z <= 13;
        voxels += static_cast<char>(inside ? 120 : 10);
    }
    std::string rek = folder.Path("block.rek");
    const Outcome outcome = Quorvex(
        {"import", WriteText(folder.Path("block.raw"), voxels), "--dims", "40x30x20", "--type", "u8", "-o", rek});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return rek;
}

TEST(VolumePicturesTest, TheBlockIsWhereItsVoxelsAreAndSurfacesOfItFit) {
    const Folder folder;
    const std::string rek = WriteBlock(folder);
    const std::vector<std::string> front{rek,      "--view", "front",  "--projection", "orthogonal", "--background",
                                         "000000", "--size", "420x320"};
    const auto draw = [&](std::vector<std::string> more) {
        more.insert(more.begin(), front.begin(), front.end());
        return Find(Draw(folder, more), IsLit);
    };
    const Spot block = draw({}); // ten pixels a voxel
    EXPECT_NEAR(block.Width(), 280, 12);
    EXPECT_NEAR(block.Height(), 120, 12);
    EXPECT_NEAR(block.x, (17.5 - 19.5) / 21.0, 0.02);
    EXPECT_NEAR(block.y, (11.5 - 14.5) / 16.0, 0.02);

    const Spot cut = draw({"--clip", "-1,0,0,-0.1"}); // what is left of x = -0.1: 14 voxels
    EXPECT_NEAR(cut.Width(), 140, 8);
    EXPECT_NEAR(cut.left, block.left, 1);
    EXPECT_EQ(draw({"--clip", "1,0,0,-5"}).count, 0);
    EXPECT_EQ(draw({"--intensity-window", "200,255"}).count, 0);
    EXPECT_NEAR(draw({"--volume-mode", "max"}).Width(), block.Width(), 16);
    EXPECT_GT(draw({"--volume-mode", "unshaded", "--samples", "1"}).count, block.count / 2);
    EXPECT_NEAR(draw({"--slice", "0,0,1,0.2"}).Height(), 120, 12);
    EXPECT_GT(draw({"--bounding-box", "--volume-mode", "max"}).Height(), 290);

    // A surface made of the voxels lies where the voxels are, and hides them.
    const std::string stl = WriteBinary(folder.Path("block.stl"), BoxSurface({3, 5, 1}, {32, 18, 14}));
    const Spot surface = draw({stl});
    EXPECT_NEAR(surface.Width(), 290, 4);
    EXPECT_NEAR(surface.x, block.x, 0.01);
    EXPECT_NEAR(surface.y, block.y, 0.01);

    std::string nothing;
    for (int i = 0; i < 256; ++i) {
        nothing += "1 1 1 0\n";
    }
    EXPECT_EQ(draw({"--transfer", WriteText(folder.Path("nothing"), nothing)}).count, 0);
    for (const auto& wrong : {std::vector<std::string>{"--volume-mode", "solid"},
                              {"--samples", "0"},
                              {"--clip", "1,2"},
                              {"--intensity-window", "1,2", "--transfer", "x"}}) {
        std::vector<std::string> arguments{"render", rek, "-o", folder.Path("a.png")};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(Quorvex(arguments).code, 2) << wrong[0];
    }
    EXPECT_EQ(Quorvex({"render", rek, "-o", folder.Path("a.png"), "--transfer", rek}).code, 1);
}

} // namespace
} // namespace testing_cli
