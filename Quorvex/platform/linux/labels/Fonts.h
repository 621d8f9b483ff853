#pragma once

#include <vector>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <freetype/freetype.h>

namespace KOVA::Quorvex::platform {

// The fonts of the system in the order in which they suit labels: the label face first, then those that have
// characters which the ones before lack. Font files are opened when a character needs them, and stay open.
class LabelFonts {
public:
    // Those of the process, found at the first call.
    static LabelFonts& OfProcess();

    // Those that the configuration knows; null is the system's.
    explicit LabelFonts(FcConfig* config);
    LabelFonts(const LabelFonts&) = delete;
    LabelFonts& operator=(const LabelFonts&) = delete;
    ~LabelFonts();

    // Loads the character's glyph as a one-bit bitmap from the first font that has it, or the sign for missing
    // characters. Valid until the next call; null when there is no font.
    FT_GlyphSlot Load(char32_t character);

private:
    struct Font {
        FcPattern* pattern;
        FT_Face face = nullptr;
        bool usable = true; // until opening it has failed
    };

    FT_Face Open(Font& font);
    bool SetSize(FT_Face face);
    FT_Face FaceFor(char32_t character);

    FT_Library m_library = nullptr;
    FcFontSet* m_sorted = nullptr;
    std::vector<Font> m_fonts;
    unsigned int m_pixelsPerEm = 0; // 0 until the first font was opened
};

} // namespace KOVA::Quorvex::platform
