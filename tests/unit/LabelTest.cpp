// The system's font renderer: what holds with every font.

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include <Quorvex/platform/Text.h>

namespace KOVA::Quorvex::platform {
namespace {

bool IsLit(const LabelPicture& picture, int x, int y) {
    return x < picture.width && picture.pixels[static_cast<std::size_t>(y * picture.width + x)] != 0;
}

// The first row with a lit pixel and the first without any below it.
std::pair<int, int> InkRows(const LabelPicture& picture) {
    const auto lit = [&picture](int y) {
        const auto begin = picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * picture.width;
        return std::find(begin, begin + picture.width, 255) != begin + picture.width;
    };
    int top = 0;
    while (top < picture.height && !lit(top)) {
        ++top;
    }
    int bottom = top;
    while (bottom < picture.height && lit(bottom)) {
        ++bottom;
    }
    return {top, bottom};
}

TEST(LabelTest, CapitalsStandOnTheBaselineOfTheirCell) {
    for (const char* text : {"H", "E", "T", "LINE"}) {
        const LabelPicture picture = RasterizeLabel(text);
        ASSERT_EQ(picture.height, LABEL_CELL_ROWS) << text << ": is there a font?";
        ASSERT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.width) * LABEL_CELL_ROWS);
        const auto [top, bottom] = InkRows(picture);
        EXPECT_EQ(bottom, LABEL_BASELINE) << text;
        EXPECT_GE(bottom - top, 20) << text;
        EXPECT_LE(bottom - top, 30) << text;
        for (const unsigned char value : picture.pixels) {
            ASSERT_TRUE(value == 0 || value == 255);
        }
    }
    const auto [top, bottom] = InkRows(RasterizeLabel("p"));
    EXPECT_GT(bottom, LABEL_BASELINE + 3) << "what hangs below the baseline is there";
    EXPECT_LE(bottom, LABEL_CELL_ROWS);
}

TEST(LabelTest, CharactersAreToldApart) {
    const std::string characters = "0123456789ABCDEFGHJKLMNOPQRSTUVWXYZabcdefghijkmnopqrstuvwxyz+-.,:;/%()=<>#";
    std::set<std::vector<unsigned char>> pictures;
    for (const char c : characters) {
        pictures.insert(RasterizeLabel(std::string(1, c)).pixels);
    }
    EXPECT_EQ(pictures.size(), characters.size());
    EXPECT_GT(RasterizeLabel("W").width, RasterizeLabel("i").width) << "the face is proportional";
}

TEST(LabelTest, LinesLieBelowEachOtherAtTheLeftEdge) {
    const std::string lines[] = {"Fit 7", "", "HEIGHT", "k"};
    const LabelPicture all = RasterizeLabel("Fit 7\n\r\nHEIGHT\r\nk");
    ASSERT_EQ(all.height, 4 * LABEL_CELL_ROWS);
    EXPECT_EQ(all.width, std::max(RasterizeLabel(lines[0]).width, RasterizeLabel(lines[2]).width));
    for (int i = 0; i < 4; ++i) {
        const LabelPicture line = RasterizeLabel(lines[i]);
        for (int y = 0; y < LABEL_CELL_ROWS; ++y) {
            for (int x = 0; x < all.width; ++x) {
                ASSERT_EQ(IsLit(all, x, i * LABEL_CELL_ROWS + y), line.height > 0 && IsLit(line, x, y))
                    << "line " << i << ": " << x << ", " << y;
            }
        }
    }
}

TEST(LabelTest, OddTexts) {
    for (const char* nothing : {"", "\n", "\r\n\n", "\x01\x1f\x7f"}) {
        EXPECT_TRUE(RasterizeLabel(nothing).pixels.empty());
        EXPECT_EQ(RasterizeLabel(nothing).height, 0);
    }
    const LabelPicture blank = RasterizeLabel(" ");
    EXPECT_GT(blank.width, 0);
    EXPECT_EQ(std::count(blank.pixels.begin(), blank.pixels.end(), 0), blank.width * LABEL_CELL_ROWS);
    EXPECT_EQ(RasterizeLabel("a\tb").pixels, RasterizeLabel("a b").pixels);
    EXPECT_EQ(RasterizeLabel("a\x02"
                             "b")
                  .pixels,
              RasterizeLabel("ab").pixels);
    EXPECT_EQ(RasterizeLabel(std::string("a\0b", 3)).pixels, RasterizeLabel("ab").pixels);
    EXPECT_EQ(RasterizeLabel(std::string(3000, 'W')).width, 0) << "wider than a label can be";
    std::string high(500, '\n');
    high += 'W';
    EXPECT_EQ(RasterizeLabel(high).width, 0) << "higher";
    EXPECT_GT(RasterizeLabel(std::string(300, 'W')).width, 300 * 20);
}

} // namespace
} // namespace KOVA::Quorvex::platform
