#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/volume/RekFormat.h>

#include "StlTestFiles.h"

namespace {

using namespace KOVA::Quorvex;
using stltest::AppendBytes;
using stltest::Contents;
using stltest::Directory;

// The warnings that come while this lives.
class Warnings {
public:
    Warnings() {
        SetWarningHandler([](const char* caption, const char* text,
                             void* user) { *static_cast<std::string*>(user) += std::string(caption) + ": " + text; },
                          &text);
    }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;
    ~Warnings() { SetWarningHandler(nullptr, nullptr); }

    std::string text;
};

std::string HeaderBytes(int width, int height, int depth, int bits, float low = 0.0F, float high = 1.0F) {
    std::string bytes(rek::headerBytes, '\0');
    std::size_t offset = 0;
    for (const int number : {width, height, bits, depth}) {
        bytes[offset++] = static_cast<char>(number & 0xFF);
        bytes[offset++] = static_cast<char>(number >> 8 & 0xFF);
    }
    std::memcpy(&bytes[688], &low, sizeof(low));
    std::memcpy(&bytes[692], &high, sizeof(high));
    return bytes;
}

// The voxels as one row; what was thrown, after its common beginning, when it could not be read.
std::string VoxelsOf(const std::string& path) {
    const Volume volume = VolumeReader::ReadREK(path.c_str());
    const VolumeData& data = volume.GetData();
    EXPECT_EQ(data.GetInstanceCounter(), 2U);
    EXPECT_EQ(data.getNumBlocks(), 1U);
    return {reinterpret_cast<const char*>(data.getDataPtr()), data.getDimX() * data.getDimY() * data.getDimZ()};
}

std::string FailureOf(const std::string& path) {
    const std::string common = "Quorvex::VolumeReader::ReadREK -> ";
    try {
        VoxelsOf(path);
    } catch (const std::exception& error) {
        const std::string text = error.what();
        EXPECT_EQ(text.substr(0, common.size()), common);
        return text.substr(std::min(common.size(), text.size()));
    }
    return "none";
}

template <class Sample> std::string Bytes(const std::vector<Sample>& samples) {
    std::string bytes;
    for (const Sample sample : samples) {
        AppendBytes(bytes, sample);
    }
    return bytes;
}

using Row = std::vector<int>;

Row Numbers(const std::string& voxels) {
    Row numbers;
    for (const char voxel : voxels) {
        numbers.push_back(static_cast<unsigned char>(voxel));
    }
    return numbers;
}

TEST(RekTest, SamplesOfEveryKindBecomeVoxels) {
    const Directory directory;
    const Warnings warnings;
    const auto read = [&](const std::string& bytes) { return Numbers(VoxelsOf(directory.Write(bytes))); };

    // The first slice of the file is the last of the volume.
    EXPECT_EQ(read(HeaderBytes(2, 1, 3, 8) + "\1\2\3\4\5\6 and more"), (Row{5, 6, 3, 4, 1, 2}));
    EXPECT_EQ(read(HeaderBytes(2, 1, 2, 16) + Bytes<std::uint16_t>({0x12FF, 0xFFFF, 0x00FF, 0x8000})),
              (Row{0, 0x80, 0x12, 0xFF}));

    // Values beyond the limits wrap around; what no 32-bit integer holds, or is no number, is 0.
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<float> floats = {10,     14,    12,  16,       9.984375F, 8,         10 + 4e6F,
                                       -3e38F, 3e38F, NAN, infinity, -infinity, 10 - 4e6F, 14.0001F};
    const Row voxels = read(HeaderBytes(14, 1, 1, 24, 10, 14) + Bytes(floats));
    EXPECT_EQ(Row(voxels.begin(), voxels.begin() + 6), (Row{0, 255, 127, 127, 0, 129}));
    for (std::size_t i = 6; i < floats.size(); ++i) {
        const float level = (floats[i] - 10.0F) / 4.0F * 255.999F;
        const double wrapped = std::fmod(std::trunc(static_cast<double>(level)), 256.0);
        EXPECT_EQ(voxels[i], std::isnan(wrapped) ? 0 : static_cast<int>(wrapped + 256.0) % 256) << floats[i];
    }
    EXPECT_EQ(warnings.text, "");
}

TEST(RekTest, EqualLimitsAreWarnedOfOnce) {
    const Directory directory;
    const Warnings warnings;
    const std::string path = directory.Write(HeaderBytes(2, 1, 2, 24, 3, 3) + Bytes<float>({3.5F, 4, 3, 2}));
    EXPECT_EQ(Numbers(VoxelsOf(path)), (Row{0, 1, 127, 255}));
    EXPECT_EQ(warnings.text, "Quorvex: RecVolMin and RecVolMax should be set properly at volumes of type float!");
}

TEST(RekTest, DamagedFilesAreRefusedByTheirKind) {
    const Directory directory;
    std::filesystem::create_directory(directory.Name("folder"));
    EXPECT_EQ(FailureOf(directory.Name("missing")), "open failed");
    const std::string folder = FailureOf(directory.Name("folder"));
    EXPECT_TRUE(folder == "open failed" || folder == "Reading of header failed") << folder;

    const std::string header = "Reading of header failed";
    const std::string eight = "Reading of 8-bit volume failed";
    const std::string sixteen = "Reading of 16-bit volume failed";
    const std::string floats = "Reading of float volume failed";
    const std::string kind = "Volume must be of type unsigned 8-bit, unsigned 16-bit oder float!";
    const struct {
        std::string bytes;
        std::string failure;
    } cases[] = {
        {"", header},
        {HeaderBytes(1, 1, 1, 8).substr(1), header},
        {HeaderBytes(2, 2, 2, 8) + std::string(7, 'x'), eight},
        {HeaderBytes(2, 2, 2, 16) + std::string(15, 'x'), sixteen},
        {HeaderBytes(2, 2, 2, 24) + std::string(31, 'x'), floats},
        {HeaderBytes(32767, 32767, 32767, 24) + "x", floats}, // 140 TB
        {HeaderBytes(-1, 1, 1, 8) + "xxxx", eight},
        {HeaderBytes(-1, -1, 1, 16) + "xxxx", sixteen},
        {HeaderBytes(1, -32768, 0, 24) + "xxxx", floats},
        {HeaderBytes(1, 1, 1, 32) + "xxxx", kind},
        {HeaderBytes(1, 1, 1, -8) + "xxxx", kind},
        {HeaderBytes(-1, 32767, 0, 0), kind},
    };
    for (const auto& test : cases) {
        const Warnings warnings;
        EXPECT_EQ(FailureOf(directory.Write(test.bytes)), test.failure);
        EXPECT_EQ(warnings.text, test.failure != kind ? ""
                                                      : "Quorvex: Volume must be of type unsigned 8-bit, unsigned "
                                                        "16-bit or float!");
    }
    const Volume none = VolumeReader::ReadREK(directory.Write(HeaderBytes(0, 5, 7, 16)).c_str());
    EXPECT_EQ(none.GetData().getDimZ(), 7U);
    EXPECT_EQ(none.GetData().get(0, 0, 0), 0);
}

// Slices smaller and larger than what is read at once, volumes of one and of several blocks.
TEST(RekTest, LargeVolumesArriveWhole) {
    const Directory directory;
    std::mt19937 random(4);
    const int sizes[][3] = {{7, 5, 30000}, {300, 300, 60}, {1000, 3100, 2}, {1, 1, 32767}, {32767, 3, 1}};
    for (const auto& size : sizes) {
        const std::size_t slice = static_cast<std::size_t>(size[0]) * static_cast<std::size_t>(size[1]);
        const auto depth = static_cast<std::size_t>(size[2]);
        for (const int bits : {8, 16, 24}) {
            const std::size_t sampleBytes = bits == 24 ? 4 : static_cast<std::size_t>(bits) / 8;
            std::string body(slice * depth * sampleBytes, '\0');
            std::string expected(slice * depth, '\0');
            for (std::size_t i = 0; i < slice * depth; ++i) {
                // The number itself as a byte and as a float, with anything below it as 16 bits.
                const auto noise = static_cast<unsigned int>(random());
                const auto voxel = static_cast<unsigned char>(noise & 0xFFU);
                const float value = static_cast<float>(voxel) + 0.5F;
                const auto word = static_cast<std::uint16_t>((noise & 0xFFU) << 8U | (noise >> 8U & 0xFFU));
                const void* const sample = bits == 8    ? static_cast<const void*>(&voxel)
                                           : bits == 16 ? static_cast<const void*>(&word)
                                                        : static_cast<const void*>(&value);
                std::memcpy(&body[i * sampleBytes], sample, sampleBytes);
                expected[(depth - 1 - i / slice) * slice + i % slice] = static_cast<char>(voxel);
            }
            const std::string path =
                directory.Write(HeaderBytes(size[0], size[1], size[2], bits, 0.0F, 255.999F) + body);
            ASSERT_TRUE(VoxelsOf(path) == expected) << slice << " " << bits;
        }
    }
}

TEST(RekTest, AnyHeaderIsReadOrRefused) {
    const Directory directory;
    const Warnings warnings;
    std::mt19937 random(5);
    int volumes = 0;
    for (int run = 0; run < 1000; ++run) {
        std::string bytes = HeaderBytes(3, 2, 2, run % 2 == 0 ? 8 : 24) + std::string(60, 'x');
        for (unsigned int i = random() % 4; i > 0; --i) {
            bytes[random() % 12] = static_cast<char>(random());
            bytes[688 + random() % 8] = static_cast<char>(random());
        }
        const std::string path = directory.Write(bytes);
        const RekHeader header = VolumeReader::ReadREKHeader(path.c_str());
        const bool sound = header.BodyBytes() >= 0 && header.BodyBytes() <= 60;
        ASSERT_EQ(FailureOf(path) == "none", sound);
        volumes += sound ? 1 : 0;
    }
    EXPECT_GT(volumes, 200);
    EXPECT_LT(volumes, 800);
}

TEST(RekTest, VolumesAndRawSamplesMakeTheRoundTrip) {
    const Directory directory;
    std::string slices[3] = {"abcdef", "ghijkl", "mnopqr"};
    std::vector<unsigned char*> blocks;
    for (std::string& slice : slices) {
        blocks.push_back(reinterpret_cast<unsigned char*>(slice.data()));
    }
    const std::string path = directory.Name("a.rek");
    ASSERT_TRUE(VolumeWriter::WriteREK(path.c_str(), VolumeData(3, 2, 3, blocks, {0, 1, 2})));
    EXPECT_EQ(VoxelsOf(path), "abcdefghijklmnopqr");
    const std::string bytes = Contents(path);
    EXPECT_EQ(bytes.substr(8, 8), std::string("\x00\x08\x02\x00\x06\x00\x00\x00", 8));
    EXPECT_EQ(bytes.substr(1008, 16), std::string("\4\3\2\1\0\0\0\0\10\7\6\5\4\3\2\1", 16));
    EXPECT_FALSE(VolumeWriter::WriteREK(path.c_str(), VolumeData(32768, 1, 1, {blocks[0]}, {0})));

    // Slices larger than what is copied at once.
    RekHeader header;
    header.width = 700;
    header.height = 701;
    header.depth = 3;
    header.bits = REK_FLOAT;
    std::vector<float> samples(700 * 701 * 3);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(i % 1000) - 200.0F;
    }
    samples[17] = std::numeric_limits<float>::infinity();
    samples[18] = NAN;
    const std::string raw = directory.Write(Bytes(samples), "raw");
    std::tie(header.recVolMin, header.recVolMax) = VolumeWriter::MeasureRaw(raw.c_str(), header);
    EXPECT_EQ(std::pair(header.recVolMin, header.recVolMax), std::pair(-200.0F, 799.0F));
    double last = 0.0;
    VolumeWriter::ConvertRaw(raw.c_str(), header, path.c_str(), [&last](double done) { last = done; });
    EXPECT_EQ(last, 1.0);
    const std::string voxels = VoxelsOf(path);
    for (std::size_t i = 0; i < samples.size(); ++i) { // z runs as in the raw file
        const float level = (samples[i] + 200.0F) / 999.0F * 255.999F;
        ASSERT_EQ(static_cast<unsigned char>(voxels[i]), std::isfinite(level) ? static_cast<int>(level) : 0) << i;
    }

    // A raw file of another length is refused and what was there stays.
    header.depth = 2;
    EXPECT_THROW(VolumeWriter::ConvertRaw(raw.c_str(), header, path.c_str()), std::exception);
    header.depth = 0;
    EXPECT_THROW(VolumeWriter::ConvertRaw(raw.c_str(), header, path.c_str()), std::exception);
    EXPECT_EQ(VoxelsOf(path), voxels);
    EXPECT_EQ(directory.Entries(), 2U);
}

} // namespace
