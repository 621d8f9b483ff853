#include <Quorvex/frame/Bitmap.h>

#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace KOVA::Quorvex {
namespace {

std::uint32_t Field(const std::vector<unsigned char>& file, std::size_t offset, int bytes) {
    std::uint32_t value = 0;
    for (int i = bytes; i-- > 0;) {
        value = value << 8 | file.at(offset + static_cast<std::size_t>(i));
    }
    return value;
}

// The whole file; empty when it was refused.
std::vector<unsigned char> Encode(const unsigned char* rgba, unsigned int width, unsigned int height) {
    std::vector<unsigned char> file;
    const bool written = EncodeBitmap(rgba, width, height, [&file](const void* data, std::size_t bytes) {
        const auto* const begin = static_cast<const unsigned char*>(data);
        file.insert(file.end(), begin, begin + bytes);
        return true;
    });
    EXPECT_EQ(written, !file.empty());
    return file;
}

// Every byte differs from its neighbours, and the alpha is nowhere among the colours.
std::vector<unsigned char> Picture(unsigned int width, unsigned int height) {
    std::vector<unsigned char> rgba(std::size_t{width} * height * 4);
    for (std::size_t i = 0; i < rgba.size(); ++i) {
        rgba[i] = i % 4 == 3 ? 255 : static_cast<unsigned char>(i % 251);
    }
    return rgba;
}

TEST(Bitmap, HeadersDescribeTheFile) {
    const std::vector<unsigned char> file = Encode(Picture(800, 600).data(), 800, 600);
    ASSERT_EQ(file.size(), 1440054U);
    EXPECT_EQ(file[0], 'B');
    EXPECT_EQ(file[1], 'M');
    EXPECT_EQ(Field(file, 2, 4), file.size());
    EXPECT_EQ(Field(file, 6, 4), 0U);
    EXPECT_EQ(Field(file, 10, 4), 54U);
    EXPECT_EQ(Field(file, 14, 4), 40U);
    EXPECT_EQ(Field(file, 18, 4), 800U);
    EXPECT_EQ(Field(file, 22, 4), 600U);
    EXPECT_EQ(Field(file, 26, 2), 1U);
    EXPECT_EQ(Field(file, 28, 2), 24U);
    EXPECT_EQ(Field(file, 30, 4), 0U);
    EXPECT_EQ(Field(file, 34, 4), 1440000U);
    for (std::size_t offset = 38; offset < 54; offset += 4) {
        EXPECT_EQ(Field(file, offset, 4), 0U);
    }
}

TEST(Bitmap, PixelsAreBlueGreenRedInTheRowsOrderWithPaddedRows) {
    for (const unsigned int width : {1U, 2U, 3U, 4U, 7U}) {
        const unsigned int height = 3;
        const std::vector<unsigned char> rgba = Picture(width, height);
        const std::vector<unsigned char> file = Encode(rgba.data(), width, height);
        const std::size_t rowSize = (file.size() - 54) / height;
        ASSERT_EQ(file.size(), 54 + rowSize * height);
        EXPECT_EQ(rowSize % 4, 0U);
        EXPECT_TRUE(rowSize >= width * 3 && rowSize < width * 3 + 4);
        for (std::size_t row = 0; row < height; ++row) {
            for (std::size_t byte = 0; byte < rowSize; ++byte) {
                const std::size_t pixel = row * width + byte / 3;
                const unsigned int expected = byte < width * 3 ? rgba[pixel * 4 + 2 - byte % 3] : 0U;
                EXPECT_EQ(file[54 + row * rowSize + byte], expected) << width << ' ' << row << ' ' << byte;
            }
        }
    }
}

TEST(Bitmap, StopsWhenNothingMoreIsTaken) {
    const std::vector<unsigned char> rgba = Picture(1000, 400);
    for (std::size_t limit = 0; limit < 3; ++limit) {
        std::size_t blocks = 0;
        EXPECT_FALSE(EncodeBitmap(rgba.data(), 1000, 400,
                                  [&](const void* /*data*/, std::size_t /*bytes*/) { return blocks++ < limit; }));
        EXPECT_EQ(blocks, limit + 1);
    }
}

TEST(Bitmap, RefusesWhatTheFormatCannotHold) {
    const unsigned char pixel[4] = {};
    const unsigned int largest = std::numeric_limits<unsigned int>::max();
    EXPECT_TRUE(Encode(pixel, 0, 5).empty());
    EXPECT_TRUE(Encode(pixel, 5, 0).empty());
    EXPECT_TRUE(Encode(pixel, largest, largest).empty());
    EXPECT_TRUE(Encode(pixel, largest, 1).empty());
    EXPECT_TRUE(Encode(pixel, 65536, 65536).empty()); // the product of the sizes is 0 in 32 bits
    EXPECT_TRUE(Encode(pixel, 1, (largest - 54) / 4 + 1).empty());
}

} // namespace
} // namespace KOVA::Quorvex
