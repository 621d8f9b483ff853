#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include <Quorvex/mesh/StlFastFacet.h>
#include <Quorvex/mesh/StlText.h>
#include <Quorvex/platform/File.h>

#include "StlTestFiles.h"

namespace {

using namespace stltest;

// The number at the front of text, by the short way; fails when it takes the text for none.
float Fast(const std::string& text) {
    const std::string padded = text + ' ' + std::string(stl::TextCursor::slack, '\0');
    float value = -77.0F;
    EXPECT_EQ(stl::FastNumber(padded.data(), value), padded.data() + text.size()) << text;
    return value;
}

// The number at the front of text, character by character.
float Exact(const Directory& directory, const std::string& text) {
    const std::string path = directory.Write(text);
    platform::InputFile file;
    EXPECT_TRUE(file.Open(path.c_str()));
    stl::TextCursor cursor(file, 0, 16);
    float value = -77.0F;
    EXPECT_TRUE(stl::ScanNumber(cursor, value)) << text;
    return value;
}

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

TEST(StlNumber, FastWayRoundsLikeTheLibrary) {
    std::mt19937 random(7);
    static constexpr std::array<const char*, 9> formats = {"%e",    "%g",   "%f",    "%.8e", "%.9g",
                                                           "%.17g", "%.3f", "%.12f", "%.0f"};
    char text[512];
    for (int i = 0; i < 300000; ++i) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(number)) {
            continue;
        }
        const char* const format = formats[random() % formats.size()];
        // Half of them in the middle of the range, where short texts are.
        int exponent = 0;
        const double fraction = std::frexp(static_cast<double>(number), &exponent);
        const double scaled = std::ldexp(fraction, i % 2 == 0 ? exponent : static_cast<int>(random() % 40) - 20);
        std::snprintf(text, sizeof(text), format, scaled);
        ASSERT_EQ(Bits(Fast(text)), Bits(std::strtof(text, nullptr))) << text;
    }
}

// Numbers that lie on, or hardly beside, the middle between two floats: rounding twice would go wrong.
TEST(StlNumber, MiddlesBetweenFloatsRoundToEven) {
    const Directory directory;
    std::mt19937 random(11);
    for (int i = 0; i < 3000; ++i) {
        // Few bits, so that the middle has a short decimal text.
        const auto mantissa = static_cast<double>((random() % (1U << 23U)) | (1U << 23U));
        const double middle = std::ldexp(mantissa + 0.5, static_cast<int>(random() % 12) - 24);
        char text[128];
        std::snprintf(text, sizeof(text), "%.40f", middle);
        std::string exact(text);
        exact.erase(exact.find_last_not_of('0') + 1);
        // Sixteen digits come so close that the nearest double is the middle itself.
        std::snprintf(text, sizeof(text), "%.15e", middle);
        const std::string digits = text[0] + std::string(text + 2, 15);
        const std::string closest =
            digits.substr(0, 8) + "." + digits.substr(8) + "e" + std::to_string(std::atoi(text + 18) - 7);
        ASSERT_EQ(Bits(Fast(closest)), Bits(std::strtof(closest.c_str(), nullptr))) << closest;
        for (const std::string& number : {exact, exact + "0001", exact + std::string(200, '0') + "1"}) {
            const std::uint32_t expected = Bits(std::strtof(number.c_str(), nullptr));
            ASSERT_EQ(Bits(Fast(number)), expected) << number;
            if (i % 30 == 0) {
                ASSERT_EQ(Bits(Exact(directory, number)), expected) << number;
            }
        }
    }
}

TEST(StlNumber, FastWayLeavesWhatIsNotPlain) {
    for (const std::string text : {"", "-", "+", ".", "e5", "1e", "1e+", "1.2.3", "nan", "inf", "0x10", "1,5", "1d5",
                                   "--1", "1-2", "123456789x", "1.5f", "123456789012345678901234567890e"}) {
        const std::string padded = text + ' ' + std::string(stl::TextCursor::slack, '\0');
        float value = 0.0F;
        EXPECT_EQ(stl::FastNumber(padded.data(), value), nullptr) << text;
    }
    // A number must be seen to end: there may be more of it behind the buffer.
    const std::string cut = "1.25" + std::string(stl::TextCursor::slack, '\0');
    float value = 0.0F;
    EXPECT_EQ(stl::FastNumber(cut.data(), value), nullptr);
}

// Longer than every buffer, and still read in bounded memory.
TEST(StlNumber, NumbersMayBeLongerThanBuffers) {
    const Directory directory;
    const std::string zeros(5000, '0');
    EXPECT_EQ(Exact(directory, zeros + "1." + zeros), 1.0F);
    EXPECT_EQ(Exact(directory, "0." + zeros + "25e5001"), 2.5F);
    EXPECT_EQ(Exact(directory, "25" + zeros + "e-5001"), 2.5F);
    EXPECT_EQ(Exact(directory, "16777217." + zeros + "1"), 16777218.0F);
    EXPECT_EQ(Exact(directory, "16777217." + zeros + zeros), 16777216.0F);
    EXPECT_EQ(Exact(directory, "0x" + zeros + "1.8" + zeros + "p1"), 3.0F);
    EXPECT_EQ(Exact(directory, "0x1000001." + zeros + "1"), 16777218.0F);
    EXPECT_EQ(Exact(directory, "0x1" + zeros + "p-20000"), 1.0F);
    EXPECT_EQ(Exact(directory, "1e" + zeros + "2"), 100.0F);
    EXPECT_EQ(Exact(directory, "1e99999999999999999999999"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(Bits(Exact(directory, "-1e-99999999999999999999999")), Bits(-0.0F));
}

// Switches to a locale with a decimal comma: an installed one, or one that is made for the test.
class DecimalComma {
public:
    explicit DecimalComma([[maybe_unused]] const Directory& directory) {
        for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "German_Germany.1252"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr) {
                return;
            }
        }
#if defined(__GLIBC__)
        const std::string source = directory.Write(
            "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n", "comma.src");
        const std::string target = directory.Name("comma");
        // It warns of the categories that are not given, and says so in its exit code.
        [[maybe_unused]] const int code =
            std::system(("localedef -c -i '" + source + "' '" + target + "' >/dev/null 2>&1").c_str());
        setenv("LOCPATH", target.substr(0, target.rfind('/')).c_str(), 1);
        std::setlocale(LC_NUMERIC, "comma");
        unsetenv("LOCPATH");
#endif
    }
    ~DecimalComma() {
        std::setlocale(LC_NUMERIC, "C");
    }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;
};

TEST(StlNumber, NumbersAreTheSameInEveryLocale) {
    const Directory directory;
    // All ways: plain numbers, odd ones, and those of files that need forgiving.
    const std::string text =
        "solid\n" + FacetText("0.5 0 0", "1.25 -2.5e1 0x1.8p0", "1.5 inf nan", "1000.5 .5 5.") + UnitFacet();
    const std::string path = directory.Write(text);
    const std::string upper =
        directory.Write("SOLID\n FACET NORMAL 0.5 0 0 OUTER LOOP VERTEX 1.25 0 0 VERTEX 0 1.5 0 VERTEX "
                        "0 0 1000.5 ENDLOOP ENDFACET ENDSOLID",
                        "upper.stl");
    const Outcome strict = OutcomeOf(MeshReader::ReadSTL, path);
    const Outcome tolerant = OutcomeOf(MeshReader::ReadSTLTolerant, upper);
    ASSERT_EQ(strict.Triangles(), 2U);
    ASSERT_EQ(tolerant.Triangles(), 1U);
    EXPECT_EQ(strict.Corner(0, 0), Vector3f(1.25F, -25.0F, 1.5F));

    const DecimalComma comma(directory);
    char probe[16];
    std::snprintf(probe, sizeof(probe), "%.1f", 1.5);
    ASSERT_STREQ(probe, "1,5") << "no locale with a decimal comma could be had: the test proves nothing";
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTL, path), strict);
    EXPECT_EQ(OutcomeOf(MeshReader::ReadSTLTolerant, upper), tolerant);
}

} // namespace
