// Labels are in the code page of the process.

#include <string>

#include <windows.h>

#include <gtest/gtest.h>

#include <Quorvex/platform/Text.h>

namespace KOVA::Quorvex::platform {
namespace {

// Empty when the code page does not have all of it.
std::string InCodePage(const std::wstring& text) {
    char bytes[64];
    BOOL replaced = FALSE;
    const bool unicode = GetACP() == CP_UTF8; // which does not tell, but has everything
    const int length =
        WideCharToMultiByte(CP_ACP, unicode ? 0 : WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                            static_cast<char*>(bytes), sizeof bytes, nullptr, unicode ? nullptr : &replaced);
    return replaced != 0 ? std::string()
                         : std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

TEST(Win32LabelTest, BytesAreReadInTheCodePage) {
    int shown = 0;
    for (const wchar_t* text : {L"\u00D8", L"\u00B1", L"\u00B5", L"\u00C5", L"\u0416", L"\u03A9"}) {
        const std::string bytes = InCodePage(text);
        if (!bytes.empty()) {
            const LabelPicture picture = RasterizeLabel(bytes);
            EXPECT_GT(picture.width, 5);
            EXPECT_LT(picture.width, 45) << "one character, however many bytes";
            EXPECT_NE(picture.pixels, RasterizeLabel("O").pixels);
            EXPECT_NE(picture.pixels, RasterizeLabel("?").pixels);
            ++shown;
        }
    }
    EXPECT_GE(shown, 2) << "of code page " << GetACP();
    const std::string measure = InCodePage(L"\u00D8 12.5 \u00B1 0.02 \u00B5m");
    if (!measure.empty()) {
        EXPECT_GT(RasterizeLabel(measure).width, 200);
        EXPECT_LT(RasterizeLabel(measure).width, 400);
    }
}

} // namespace
} // namespace KOVA::Quorvex::platform
