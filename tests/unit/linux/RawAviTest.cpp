// Uncompressed AVI files of several segments: their indexes lead to every picture, also for an independent reader.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include <Quorvex/platform/linux/RawAvi.h>

#include <tests/TestDirectory.h>

namespace KOVA::Quorvex::platform {
namespace {

constexpr unsigned int WIDTH = 16;
constexpr unsigned int HEIGHT = 8;
constexpr std::size_t FRAME_BYTES = std::size_t{3} * WIDTH * HEIGHT;

// With channels (4: red first and alpha; 3: as files have them, blue first) a pixel.
std::vector<unsigned char> Picture(std::size_t number, std::size_t channels) {
    std::vector<unsigned char> bytes(FRAME_BYTES / 3 * channels, 99);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t channel = i % channels;
        if (channel < 3) {
            bytes[i] = static_cast<unsigned char>(number * 31 + i / channels * 7 +
                                                  (channels == 4 ? channel : 2 - channel) * 50);
        }
    }
    return bytes;
}

class RawAviTest : public testing::Test {
protected:
    void Record(std::size_t frames, std::uint64_t segmentBytes) {
        SeekableFile file(m_path);
        RawAvi writer(file, WIDTH, HEIGHT, segmentBytes);
        for (std::size_t i = 0; i < frames; ++i) {
            ASSERT_EQ(writer.Write(Picture(i, 4).data()), VideoResult::Written);
        }
        ASSERT_TRUE(writer.Finish());
        ASSERT_TRUE(file.Close());
        std::ifstream read(m_path, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(read), {});
    }

    std::uint64_t At(std::size_t place, std::size_t count = 4) const {
        std::uint64_t value = 0;
        for (std::size_t i = count; i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(m_bytes.at(place + i));
        }
        return value;
    }
    std::size_t Find(const std::string& code, std::size_t from = 0) const { return m_bytes.find(code, from); }

    // The picture that an index entry points to, a hash of nothing but its bytes.
    void ExpectPicture(std::size_t place, std::size_t number) const {
        const std::vector<unsigned char> wanted = Picture(number, 3);
        EXPECT_EQ(m_bytes.substr(place, FRAME_BYTES), std::string(wanted.begin(), wanted.end()))
            << "picture " << number;
    }

    TestDirectory m_folder;
    std::filesystem::path m_path = m_folder.Path() / "raw.avi";
    std::string m_bytes;
};

TEST_F(RawAviTest, IndexesLeadToEveryPicture) {
    for (const std::size_t frames : {0U, 1U, 4U, 5U, 23U}) {
        Record(frames, 4 * (FRAME_BYTES + 8)); // four pictures a segment
        const std::size_t segments = frames == 0 ? 1 : (frames + 3) / 4;

        const std::size_t super = Find("indx");
        ASSERT_EQ(At(super + 12), segments);
        std::size_t number = 0;
        for (std::size_t i = 0; i < segments; ++i) {
            const std::size_t entry = super + 32 + 16 * i;
            const std::size_t index = At(entry, 8);
            ASSERT_EQ(m_bytes.substr(index, 4), "ix00");
            EXPECT_EQ(At(entry + 8), At(index + 4) + 8);
            EXPECT_EQ(At(entry + 12), At(index + 12)) << "frames";
            const std::size_t base = At(index + 20, 8);
            for (std::size_t k = 0; k < At(index + 12); ++k, ++number) {
                EXPECT_EQ(At(index + 36 + 8 * k), FRAME_BYTES);
                ExpectPicture(base + At(index + 32 + 8 * k), number);
            }
        }
        EXPECT_EQ(number, frames);

        // The chunks of the file lie side by side up to its end.
        std::size_t place = 0;
        std::size_t chunks = 0;
        for (; place < m_bytes.size(); place += 8 + At(place + 4), ++chunks) {
            ASSERT_EQ(m_bytes.substr(place, 4), "RIFF");
            EXPECT_EQ(m_bytes.substr(place + 8, 4), chunks == 0 ? "AVI " : "AVIX");
        }
        EXPECT_EQ(place, m_bytes.size());
        EXPECT_EQ(chunks, segments);

        const std::size_t old = Find("idx1");
        const std::size_t movie = Find("movi");
        EXPECT_EQ(At(old + 4), 16 * std::min<std::size_t>(frames, 4));
        for (std::size_t k = 0; k < std::min<std::size_t>(frames, 4); ++k) {
            ExpectPicture(movie + At(old + 16 + 16 * k) + 8, k);
        }
    }
}

TEST_F(RawAviTest, OtherProgramsReadAllSegments) {
    if (std::system("ffmpeg -version >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    Record(50, 7 * (FRAME_BYTES + 8));
    const std::string raw = m_path.string() + ".raw";
    const std::string command =
        "ffmpeg -v error -i '" + m_path.string() + "' -vf vflip -f rawvideo -pix_fmt bgr24 -y '";
    ASSERT_EQ(std::system((command + raw + "'").c_str()), 0);
    std::ifstream read(raw, std::ios::binary);
    m_bytes.assign(std::istreambuf_iterator<char>(read), {});
    std::filesystem::remove(raw);
    ASSERT_EQ(m_bytes.size(), 50 * FRAME_BYTES);
    for (std::size_t i = 0; i < 50; ++i) {
        ExpectPicture(i * FRAME_BYTES, i);
    }
}

} // namespace
} // namespace KOVA::Quorvex::platform
