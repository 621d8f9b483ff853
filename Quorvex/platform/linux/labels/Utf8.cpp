#include <Quorvex/platform/linux/labels/Utf8.h>

namespace KOVA::Quorvex::platform {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

// A lead byte's number of bytes in all and the smallest character that needs so many; 0 for no lead byte.
struct Form {
    std::size_t length;
    char32_t smallest;
    char32_t leadBits;
};

Form FormOf(unsigned char lead) {
    if (lead < 0x80) {
        return {1, 0, lead};
    }
    if (lead >= 0xC0 && lead < 0xE0) {
        return {2, 0x80, lead & 0x1FU};
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return {3, 0x800, lead & 0x0FU};
    }
    if (lead >= 0xF0 && lead < 0xF8) {
        return {4, 0x10000, lead & 0x07U};
    }
    return {0, 0, 0};
}

bool IsCharacter(char32_t c) {
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

// Takes one character off the front.
char32_t Take(std::string_view& text) {
    const auto byteAt = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const Form form = FormOf(byteAt(0));
    char32_t c = form.leadBits;
    bool whole = form.length > 0 && form.length <= text.size();
    for (std::size_t i = 1; whole && i < form.length; ++i) {
        whole = (byteAt(i) & 0xC0U) == 0x80U;
        c = (c << 6U) | (byteAt(i) & 0x3FU);
    }
    whole = whole && c >= form.smallest && IsCharacter(c);
    text.remove_prefix(whole ? form.length : 1);
    return whole ? c : REPLACEMENT;
}

} // namespace

std::u32string DecodeUtf8(std::string_view text) {
    std::u32string characters;
    characters.reserve(text.size());
    while (!text.empty()) {
        characters.push_back(Take(text));
    }
    return characters;
}

} // namespace KOVA::Quorvex::platform
