#include <Quorvex/platform/linux/labels/Fonts.h>

#include <memory>

#include <Quorvex/platform/Text.h>

namespace KOVA::Quorvex::platform {

namespace {

struct DestroyPattern {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};

// The fonts of the system, most suitable first; each has characters that the ones before lack. Null when there is none.
FcFontSet* SortedFonts(FcConfig* config) {
    const std::unique_ptr<FcPattern, DestroyPattern> wanted(FcPatternCreate());
    if (wanted == nullptr) {
        return nullptr;
    }
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("Arial"));
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, FC_WEIGHT_BOLD);
    FcPatternAddInteger(wanted.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddBool(wanted.get(), FC_OUTLINE, FcTrue);
    FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    return FcFontSort(config, wanted.get(), FcTrue, nullptr, &result);
}

bool HasCharacter(FcPattern* pattern, char32_t character) {
    FcCharSet* characters = nullptr;
    return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, character) != FcFalse;
}

} // namespace

LabelFonts& LabelFonts::OfProcess() {
    static LabelFonts s_fonts(nullptr);
    return s_fonts;
}

LabelFonts::LabelFonts(FcConfig* config) {
    if (FT_Init_FreeType(&m_library) != 0) {
        m_library = nullptr;
        return;
    }
    m_sorted = SortedFonts(config);
    for (int i = 0; m_sorted != nullptr && i < m_sorted->nfont; ++i) {
        m_fonts.push_back({m_sorted->fonts[i]});
    }
}

LabelFonts::~LabelFonts() {
    if (m_sorted != nullptr) {
        FcFontSetDestroy(m_sorted);
    }
    if (m_library != nullptr) {
        FT_Done_FreeType(m_library); // and the faces
    }
}

FT_GlyphSlot LabelFonts::Load(char32_t character) {
    const FT_Face face = FaceFor(character);
    if (face == nullptr) {
        return nullptr;
    }
    constexpr FT_Int32 oneBit = FT_LOAD_RENDER | FT_LOAD_TARGET_MONO | FT_LOAD_MONOCHROME;
    const FT_UInt glyph = FT_Get_Char_Index(face, character); // 0, the sign for missing ones, when there is none
    const bool loaded = FT_Load_Glyph(face, glyph, oneBit) == 0 && face->glyph->bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
    return loaded ? face->glyph : nullptr;
}

// The first usable font gives the size, and the sign for characters that none has.
FT_Face LabelFonts::FaceFor(char32_t character) {
    FT_Face first = nullptr;
    for (Font& font : m_fonts) {
        if (first != nullptr && !HasCharacter(font.pattern, character)) {
            continue;
        }
        const FT_Face face = Open(font);
        if (face != nullptr && FT_Get_Char_Index(face, character) != 0) {
            return face;
        }
        first = first == nullptr ? face : first;
    }
    return first;
}

FT_Face LabelFonts::Open(Font& font) {
    if (font.face != nullptr || !font.usable) {
        return font.face;
    }
    FcChar8* file = nullptr;
    int index = 0;
    FcPatternGetInteger(font.pattern, FC_INDEX, 0, &index);
    FT_Face face = nullptr;
    font.usable = FcPatternGetString(font.pattern, FC_FILE, 0, &file) == FcResultMatch &&
                  FT_New_Face(m_library, reinterpret_cast<const char*>(file), index, &face) == 0 && SetSize(face);
    if (font.usable) {
        font.face = face;
    } else if (face != nullptr) {
        FT_Done_Face(face);
    }
    return font.face;
}

// The label face fills the cell from its highest to its lowest letters; the others get the same size, so that their
// letters are as large.
bool LabelFonts::SetSize(FT_Face face) {
    if (!FT_IS_SCALABLE(face)) {
        return false;
    }
    if (m_pixelsPerEm == 0) {
        FT_Size_RequestRec cell{FT_SIZE_REQUEST_TYPE_REAL_DIM, 0, FT_Long{LABEL_CELL_ROWS} * 64, 0, 0};
        if (FT_Request_Size(face, &cell) != 0) {
            return false;
        }
        m_pixelsPerEm = face->size->metrics.y_ppem;
    }
    return FT_Set_Pixel_Sizes(face, 0, m_pixelsPerEm) == 0;
}

} // namespace KOVA::Quorvex::platform
