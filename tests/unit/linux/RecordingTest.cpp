// Recordings of many pictures, and on a disk that fills up, without OpenGL.

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include <Quorvex/frame/Recording.h>

#include <tests/TestDirectory.h>

#include "FileSizeLimit.h"

namespace KOVA::Quorvex {
namespace {

namespace fs = std::filesystem;

constexpr unsigned int SIZE = 64;

class RecordingTest : public testing::TestWithParam<const char*> {
protected:
    RecordingTest() {
        const char* code = GetParam();
        m_options = platform::MakeCodecOptions(platform::FourCharacters(code[0], code[1], code[2], code[3]));
    }

    std::shared_ptr<Recording> Open() { return Recording::Open(Path().c_str(), SIZE, SIZE, nullptr, m_options); }
    std::string Path() const { return m_folder.Name("a.avi"); }
    std::size_t Files() const { return m_folder.Entries(); }

    TestDirectory m_folder;
    std::shared_ptr<const platform::CodecOptions> m_options;
};

std::unique_ptr<unsigned char[]> Noise(unsigned int seed) {
    std::unique_ptr<unsigned char[]> picture(new unsigned char[SIZE * SIZE * 4]);
    for (unsigned int i = 0; i < SIZE * SIZE * 4; ++i) {
        seed = seed * 1664525U + 1013904223U;
        picture[i] = static_cast<unsigned char>(seed >> 24U);
    }
    return picture;
}

std::size_t ResidentPages() {
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident;
}

TEST_P(RecordingTest, MemoryDoesNotGrowWithTheRecording) {
    const auto recording = Open();
    if (recording == nullptr) {
        GTEST_SKIP() << "there is no such codec";
    }
    std::size_t early = 0;
    for (unsigned int i = 0; i < 10000; ++i) {
        ASSERT_TRUE(recording->Add(Noise(i)));
        early = i == 1000 ? ResidentPages() : early;
    }
#if !defined(__SANITIZE_ADDRESS__) // which keeps what was freed
    EXPECT_LT(ResidentPages(), early + 512) << "pages of 4 KB";
#endif
    EXPECT_TRUE(recording->Finish());
    EXPECT_TRUE(recording->Finish());
    EXPECT_FALSE(recording->Add(Noise(0)));
    EXPECT_EQ(Files(), 1U);
}

TEST_P(RecordingTest, AFullDiskIsToldAndLeavesWhatWasThere) {
    std::ofstream(Path(), std::ios::binary) << "before";
    if (Open() == nullptr) {
        GTEST_SKIP() << "there is no such codec";
    }
    std::ofstream(Path(), std::ios::binary) << "before";
    for (const unsigned int pictures : {20U, 1000U}) { // learnt at the end, and in between
        const FileSizeLimit limit(20000);
        const auto recording = Open();
        ASSERT_NE(recording, nullptr);
        unsigned int taken = 0;
        for (unsigned int i = 0; i < pictures; ++i) {
            taken += recording->Add(Noise(i)) ? 1U : 0U;
        }
        EXPECT_LT(taken, 100U);
        EXPECT_FALSE(recording->Finish());
        EXPECT_FALSE(recording->Finish());
    }
    EXPECT_EQ(Files(), 1U);
    EXPECT_EQ(fs::file_size(Path()), 6U);
}

TEST_P(RecordingTest, DiscardedAndUnfinishedOnes) {
    if (Open() == nullptr) {
        GTEST_SKIP() << "there is no such codec";
    }
    EXPECT_EQ(Files(), 1U) << "going away finishes it";
    fs::remove(Path());
    const auto recording = Open();
    EXPECT_TRUE(recording->Add(Noise(1)));
    recording->Discard();
    EXPECT_FALSE(recording->Finish());
    EXPECT_FALSE(recording->Add(Noise(2)));
    EXPECT_EQ(Files(), 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, RecordingTest, testing::Values("DIB ", "MJPG"));

} // namespace
} // namespace KOVA::Quorvex
