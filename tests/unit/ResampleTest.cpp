#include <Quorvex/frame/Resample.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

namespace KOVA::Quorvex {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes Noise(std::size_t size, unsigned int seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random() % 256); });
    return bytes;
}

Bytes Transposed(const Bytes& bytes, std::size_t width, std::size_t height) {
    Bytes result(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        result[i % width * height + i / width] = bytes[i];
    }
    return result;
}

// The average by its definition: every source pixel is repeated width x height times, so that the new pixels consist
// of whole ones.
unsigned char AreaMean(const Bytes& source, std::array<std::size_t, 2> from, std::array<std::size_t, 2> to,
                       std::size_t x, std::size_t y) {
    std::uint64_t sum = 0;
    for (std::size_t v = y * from[1]; v < (y + 1) * from[1]; ++v) {
        for (std::size_t u = x * from[0]; u < (x + 1) * from[0]; ++u) {
            sum += source[v / to[1] * from[0] + u / to[0]];
        }
    }
    const std::uint64_t count = from[0] * from[1];
    return static_cast<unsigned char>((sum + count / 2) / count);
}

TEST(Resample, TheSameSizeGivesTheSameBytes) {
    const Bytes source = Noise(31 * 17 * 4, 1);
    EXPECT_EQ(Resample(source.data(), 31, 17, 4, 31, 17), source);
}

TEST(Resample, SmallerPicturesAreExactAreaAverages) {
    const std::array<std::array<unsigned int, 4>, 7> cases = {
        {{8, 6, 4, 3}, {7, 5, 3, 2}, {7, 5, 7, 2}, {16, 9, 5, 9}, {10, 10, 9, 9}, {13, 11, 1, 1}, {64, 48, 24, 36}}};
    for (const auto& [fromX, fromY, toX, toY] : cases) {
        const Bytes source = Noise(std::size_t{fromX} * fromY, fromX + fromY);
        const Bytes result = Resample(source.data(), fromX, fromY, 1, toX, toY);
        ASSERT_EQ(result.size(), std::size_t{toX} * toY);
        for (std::size_t i = 0; i < result.size(); ++i) {
            EXPECT_EQ(result[i], AreaMean(source, {fromX, fromY}, {toX, toY}, i % toX, i / toX))
                << fromX << 'x' << fromY << " pixel " << i;
        }
    }
}

TEST(Resample, RoundsHalvesUp) {
    const Bytes source = {0, 1, 0, 0, 254, 255, 255, 255};
    EXPECT_EQ(Resample(source.data(), 8, 1, 1, 4, 1), (Bytes{1, 0, 255, 255}));
    EXPECT_EQ(Resample(source.data(), 4, 2, 1, 2, 1), (Bytes{128, 128})); // 127.5 and 127.5

    // 25/49 is the first above a half; 1/49 is not exact, not even in double precision.
    Bytes ones(49, 0);
    std::fill_n(ones.begin(), 24, static_cast<unsigned char>(1));
    EXPECT_EQ(Resample(ones.data(), 7, 7, 1, 1, 1), Bytes{0});
    ones.back() = 1;
    EXPECT_EQ(Resample(ones.data(), 7, 7, 1, 1, 1), Bytes{1});
}

TEST(Resample, LargerPicturesContinueARampAndRepeatTheEdges) {
    Bytes ramp(12);
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        ramp[i] = static_cast<unsigned char>(20 * i);
    }
    for (const unsigned int size : {13U, 24U, 31U, 240U}) {
        const Bytes result = Resample(ramp.data(), 12, 1, 1, size, 1);
        ASSERT_EQ(result.size(), size);
        for (unsigned int i = 0; i < size; ++i) {
            const double position = (i + 0.5) * 12.0 / size - 0.5;
            const double expected = 20.0 * std::clamp(position, 0.0, 11.0);
            EXPECT_NEAR(result[i], expected, 0.5 + 1e-9) << size << " pixel " << i;
        }
        EXPECT_EQ(Resample(ramp.data(), 1, 12, 1, 1, size), result);
    }
    const unsigned char pixel = 77;
    EXPECT_EQ(Resample(&pixel, 1, 1, 1, 5, 3), Bytes(15, 77));
}

TEST(Resample, AxesAndChannelsAreIndependent) {
    // One axis grows while the other shrinks; turning the picture over swaps their roles.
    const Bytes source = Noise(9 * 20, 5);
    const Bytes wide = Resample(source.data(), 9, 20, 1, 14, 7);
    const Bytes turned = Transposed(source, 9, 20);
    EXPECT_EQ(Resample(turned.data(), 20, 9, 1, 7, 14), Transposed(wide, 14, 7));

    for (const unsigned int channels : {2U, 3U, 4U}) {
        Bytes interleaved(source.size() * channels);
        Bytes expected(wide.size() * channels);
        for (unsigned int channel = 0; channel < channels; ++channel) {
            const Bytes single = Noise(source.size(), 40 + channel);
            const Bytes resampled = Resample(single.data(), 9, 20, 1, 14, 7);
            for (std::size_t i = 0; i < single.size(); ++i) {
                interleaved[i * channels + channel] = single[i];
            }
            for (std::size_t i = 0; i < resampled.size(); ++i) {
                expected[i * channels + channel] = resampled[i];
            }
        }
        EXPECT_EQ(Resample(interleaved.data(), 9, 20, channels, 14, 7), expected);
    }
}

TEST(Resample, TheMeanIsKept) {
    const Bytes source = Noise(200 * 150, 9);
    const Bytes result = Resample(source.data(), 200, 150, 1, 77, 64);
    const double before = std::accumulate(source.begin(), source.end(), 0.0) / static_cast<double>(source.size());
    const double after = std::accumulate(result.begin(), result.end(), 0.0) / static_cast<double>(result.size());
    EXPECT_NEAR(after, before, 0.02); // rounding errors of single pixels average out
}

TEST(Resample, TheLargestSizesStayExact) {
    const unsigned int largest = 65535;
    Bytes line(largest, 255);
    EXPECT_EQ(Resample(line.data(), largest, 1, 1, largest - 1, 1), Bytes(largest - 1, 255));
    EXPECT_EQ(Resample(line.data(), 1, largest, 1, 1, 1), Bytes(1, 255));
    const Bytes tall(std::size_t{3} * largest, 255);
    EXPECT_EQ(Resample(tall.data(), 3, largest, 1, largest, 1), Bytes(largest, 255));

    // 65535 values whose sum is just below and just at a half.
    std::fill(line.begin(), line.end(), static_cast<unsigned char>(0));
    std::fill_n(line.begin(), 32767, static_cast<unsigned char>(1));
    EXPECT_EQ(Resample(line.data(), largest, 1, 1, 1, 1), Bytes{0});
    line.back() = 1;
    EXPECT_EQ(Resample(line.data(), largest, 1, 1, 1, 1), Bytes{1});
}

TEST(Resample, RefusesSizesAndChannelsOutsideItsRange) {
    const unsigned char pixel[4] = {};
    EXPECT_TRUE(Resample(pixel, 0, 1, 1, 1, 1).empty());
    EXPECT_TRUE(Resample(pixel, 1, 1, 1, 1, 0).empty());
    EXPECT_TRUE(Resample(pixel, 1, 1, 1, 65536, 1).empty());
    EXPECT_TRUE(Resample(pixel, 1, 1, 0, 1, 1).empty());
    EXPECT_TRUE(Resample(pixel, 1, 1, 5, 1, 1).empty());
}

} // namespace
} // namespace KOVA::Quorvex
