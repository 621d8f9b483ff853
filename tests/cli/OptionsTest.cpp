#include <cli/RenderOptions.h>

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cli/Studio.h>

namespace KOVA::Quorvex::cli {
namespace {

TEST(OptionsTest, Sizes) {
    EXPECT_EQ(ParseSize("640x480").width, 640U);
    EXPECT_EQ(ParseSize("640x480").height, 480U);
    EXPECT_EQ(ParseSize("1x16384").height, 16384U);
    for (const char* wrong : {"", "x", "640", "640x", "x480", "0x480", "640x0", "16385x1", "1x16385", "-4x4", "4x4x4",
                              "4 x4", "+4x4", "4.5x4", "99999999999x4", "640X480"}) {
        EXPECT_THROW(ParseSize(wrong), std::invalid_argument) << wrong;
    }
}

TEST(OptionsTest, Numbers) {
    EXPECT_DOUBLE_EQ(ParseNumber("1.5", 1, 8), 1.5);
    EXPECT_DOUBLE_EQ(ParseNumber("8", 1, 8), 8.0);
    for (const char* wrong : {"", "0.99", "8.01", "nan", "inf", "2,5", "2 ", " 2", "two", "2f"}) {
        EXPECT_THROW(ParseNumber(wrong, 1, 8), std::invalid_argument) << wrong;
    }
}

TEST(OptionsTest, Backgrounds) {
    const Background one = ParseBackground("ff8000");
    EXPECT_EQ(one.top, ColorRGBA(1.0F, 128.0F / 255.0F, 0.0F));
    EXPECT_EQ(one.bottom, one.top);
    const Background two = ParseBackground("000000,0000FF");
    EXPECT_EQ(two.top, ColorRGBA(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(two.bottom, ColorRGBA(0.0F, 0.0F, 1.0F));
    for (const char* wrong : {"", "fff", "ff80000", "gg0000", "#ff8000", "ff8000,", ",ff8000", "-f8000", "0xff80",
                              "000000,111111,222222"}) {
        EXPECT_THROW(ParseBackground(wrong), std::invalid_argument) << wrong;
    }
}

TEST(OptionsTest, NamesAndEndings) {
    EXPECT_EQ(ParseSide("bottom"), Side::Bottom);
    EXPECT_EQ(ParseProjection("orthogonal"), Projection::Orthogonal);
    EXPECT_EQ(ParseMeshMode("hidden-line"), MeshAttribute::RENDER_HIDDEN_LINE);
    EXPECT_THROW(ParseSide("Front"), std::invalid_argument);
    EXPECT_THROW(ParseMeshMode(""), std::invalid_argument);
    try {
        ParseProjection("fish");
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "'fish' is none of perspective, orthogonal");
    }
    EXPECT_EQ(FormatOf("a.png.BMP"), PictureFormat::Bmp);
    EXPECT_EQ(FormatOf("a.Png"), PictureFormat::Png);
    EXPECT_THROW(FormatOf("a.jpg"), std::invalid_argument);
    EXPECT_THROW(FormatOf("png"), std::invalid_argument);
}

TEST(OptionsTest, PointsAndLines) {
    const PointMark point = ParsePointMark("-1.5,2e3,.25,Bore, 12 mm\\nH7\\n");
    EXPECT_EQ(point.position, (Position{-1.5, 2000, 0.25}));
    EXPECT_EQ(point.label, "Bore, 12 mm\nH7\n");
    EXPECT_EQ(ParsePointMark("0,0,0").label, "");
    EXPECT_EQ(ParsePointMark("0,0,0,").label, "");
    EXPECT_EQ(ParsePointMark("0,0,0,1,2").label, "1,2");
    const LineMark line = ParseLineMark("1,2,3,4,5,6,7");
    EXPECT_EQ(line.ends[0], (Position{1, 2, 3}));
    EXPECT_EQ(line.ends[1], (Position{4, 5, 6}));
    EXPECT_EQ(line.label, "7");
    for (const char* wrong : {"", "1,2", "1,2,", "1,2,z", "1,,3", " 1,2,3", "1,2,3x", "inf,0,0", "0,nan,0", "1e39,0,0",
                              "1e999,0,0", "+1,2,3", "a"}) {
        EXPECT_THROW(ParsePointMark(wrong), std::invalid_argument) << wrong;
        EXPECT_THROW(ParseLineMark(std::string("1,2,3,") + wrong), std::invalid_argument) << wrong;
    }
}

TEST(OptionsTest, BitmapsHaveWidthsOfWholeFours) {
    RenderOptions options;
    options.output = "a.bmp";
    options.size = {802, 600};
    EXPECT_THROW(CheckPicture(options), std::invalid_argument);
    options.size = {804, 601};
    EXPECT_NO_THROW(CheckPicture(options));
    options.output = "a.png";
    options.size = {801, 1};
    EXPECT_NO_THROW(CheckPicture(options));
}

TEST(OptionsTest, StereoGridAndAxesThatCannotBeDrawnAreRefused) {
    EXPECT_EQ(ParseStereo("5"), STEREO_COLUMNS_SWAPPED);
    for (const char* wrong : {"", "6", "-1", "01", "a"}) {
        EXPECT_THROW(ParseStereo(wrong), std::invalid_argument) << wrong;
    }
    const auto isRefused = [](const auto& change) {
        RenderOptions options;
        options.output = "a.png";
        options.side = Side::Top;
        EXPECT_NO_THROW(CheckPicture(options));
        change(options);
        try {
            CheckPicture(options);
        } catch (const std::invalid_argument&) {
            return true;
        }
        return false;
    };
    EXPECT_FALSE(isRefused([](RenderOptions& o) { o.axes = o.grid = true; }));
    EXPECT_FALSE(isRefused([](RenderOptions& o) { o.grid = true, o.stereo = STEREO_ROWS; }));
    EXPECT_TRUE(isRefused([](RenderOptions& o) { o.grid = true, o.side = Side::Iso; }));
    EXPECT_TRUE(isRefused([](RenderOptions& o) { o.axes = true, o.stereo = STEREO_ROWS; }));
    EXPECT_TRUE(isRefused([](RenderOptions& o) { o.stereo = STEREO_ROWS, o.size.height = 4097; }));
    EXPECT_FALSE(isRefused([](RenderOptions& o) { o.stereo = STEREO_ANAGLYPH, o.size.height = 4097; }));
}

TEST(ExposureTest, TheBrightLevelLeavesOutAFewSpecks) {
    std::vector<unsigned char> pixels(15000, 0);
    EXPECT_EQ(BrightLevel(pixels), 0.0);
    std::fill(pixels.begin(), pixels.begin() + 12000, static_cast<unsigned char>(51));
    EXPECT_DOUBLE_EQ(BrightLevel(pixels), 0.2);
    std::fill(pixels.begin(), pixels.begin() + 120, static_cast<unsigned char>(255));
    EXPECT_DOUBLE_EQ(BrightLevel(pixels), 0.2) << "one in a hundred of those that are lit";
    std::fill(pixels.begin(), pixels.begin() + 123, static_cast<unsigned char>(255));
    EXPECT_DOUBLE_EQ(BrightLevel(pixels), 1.0);
    EXPECT_DOUBLE_EQ(ExposedScale(0.5, 0.2, 0.8), 2.0);
}

} // namespace
} // namespace KOVA::Quorvex::cli
