// What labels are made of on Linux: UTF-8, and fonts that stand in for each other.

#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <Quorvex/platform/Text.h>
#include <Quorvex/platform/linux/labels/Fonts.h>
#include <Quorvex/platform/linux/labels/Utf8.h>

namespace KOVA::Quorvex::platform {
namespace {

std::string Encode(char32_t c) {
    const auto bits = [c](unsigned int shift) { return static_cast<char>(0x80U | ((c >> shift) & 0x3FU)); };
    if (c < 0x80) {
        return {static_cast<char>(c)};
    }
    if (c < 0x800) {
        return {static_cast<char>(0xC0U | (c >> 6U)), bits(0)};
    }
    if (c < 0x10000) {
        return {static_cast<char>(0xE0U | (c >> 12U)), bits(6), bits(0)};
    }
    return {static_cast<char>(0xF0U | (c >> 18U)), bits(12), bits(6), bits(0)};
}

TEST(Utf8Test, EveryCharacterIsReadAndNothingElse) {
    std::mt19937 random(3);
    std::u32string characters = {0, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF};
    while (characters.size() < 2000) {
        const auto c = static_cast<char32_t>(random() % 0x110000);
        characters.append(c < 0xD800 || c > 0xDFFF ? 1 : 0, c);
    }
    std::string encoded;
    for (const char32_t c : characters) {
        encoded += Encode(c);
    }
    EXPECT_EQ(DecodeUtf8(encoded), characters);

    for (const std::string bytes :
         {"\x80", "\xBF\xBF", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF",
          "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
        const std::u32string wrong(bytes.size(), U'\xFFFD');
        EXPECT_EQ(DecodeUtf8(bytes), wrong) << testing::PrintToString(bytes);
        EXPECT_EQ(DecodeUtf8("<" + bytes + ">"), U"<" + wrong + U">") << testing::PrintToString(bytes);
    }
}

// Whether any scalable font of the system has the character.
bool SystemHas(char32_t character) {
    const std::unique_ptr<FcPattern, void (*)(FcPattern*)> wanted(FcPatternCreate(), FcPatternDestroy);
    const std::unique_ptr<FcCharSet, void (*)(FcCharSet*)> characters(FcCharSetCreate(), FcCharSetDestroy);
    FcCharSetAddChar(characters.get(), character);
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters.get());
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    const std::unique_ptr<FcObjectSet, void (*)(FcObjectSet*)> wish(FcObjectSetBuild(FC_FILE, nullptr),
                                                                    FcObjectSetDestroy);
    const std::unique_ptr<FcFontSet, void (*)(FcFontSet*)> fonts(FcFontList(nullptr, wanted.get(), wish.get()),
                                                                 FcFontSetDestroy);
    return fonts != nullptr && fonts->nfont > 0;
}

TEST(LabelFontsTest, ACharacterThatAnyFontHasIsShown) {
    const LabelPicture missing = RasterizeLabel(Encode(0x10FFFD));
    EXPECT_NE(missing.pixels, std::vector<unsigned char>(missing.pixels.size(), 0)) << "a sign of what is missing";
    int shown = 0;
    for (const char32_t c : U"ØµΩ±°²Åß√≤αЖאا日한☃⚙♠➤") {
        if (c != 0 && SystemHas(c)) {
            const LabelPicture picture = RasterizeLabel(Encode(c));
            EXPECT_NE(picture.pixels, missing.pixels) << testing::PrintToString(c);
            EXPECT_NE(picture.pixels, std::vector<unsigned char>(picture.pixels.size(), 0));
            EXPECT_LT(picture.width, 60);
            ++shown;
        }
    }
    EXPECT_GE(shown, 10);
    EXPECT_NE(RasterizeLabel("Ø 12.5 ± 0.02 µm").pixels, RasterizeLabel("O 12.5 + 0.02 um").pixels);
}

TEST(LabelFontsTest, WithoutAnyFontThereIsNoGlyphAndNoFailure) {
    const std::unique_ptr<FcConfig, void (*)(FcConfig*)> empty(FcConfigCreate(), FcConfigDestroy);
    LabelFonts none(empty.get());
    EXPECT_EQ(none.Load(U'A'), nullptr);
    EXPECT_EQ(none.Load(0x10FFFD), nullptr);
}

} // namespace
} // namespace KOVA::Quorvex::platform
