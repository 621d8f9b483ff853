#include <Quorvex/platform/Text.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <Quorvex/platform/linux/labels/Fonts.h>
#include <Quorvex/platform/linux/labels/Utf8.h>

namespace KOVA::Quorvex::platform {

namespace {

// A glyph's bits and where they lie: x from the left end of its line, y down from the line's baseline.
struct PlacedGlyph {
    int x, y;
    int width, rows;
    std::vector<unsigned char> bits; // (width + 7) / 8 bytes a row, the leftmost pixel in the highest bit
};

struct PlacedLine {
    int left = 0;  // of the leftmost pixel
    int right = 0; // of the advance or of the rightmost pixel, whichever is further
    std::vector<PlacedGlyph> glyphs;
};

bool TakesRoom(char32_t c) {
    return c >= 0x20 && c != 0x7F;
}

PlacedGlyph Place(const FT_GlyphSlot slot, int pen) {
    const FT_Bitmap& bitmap = slot->bitmap;
    PlacedGlyph glyph{
        pen + slot->bitmap_left, -slot->bitmap_top, static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows), {}};
    const std::size_t rowBytes = (bitmap.width + 7) / 8;
    for (unsigned int row = 0; row < bitmap.rows; ++row) {
        const unsigned char* bits = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        glyph.bits.insert(glyph.bits.end(), bits, bits + rowBytes);
    }
    return glyph;
}

PlacedLine PlaceLine(LabelFonts& fonts, std::u32string_view text) {
    PlacedLine line;
    int pen = 0;
    for (char32_t c : text) {
        c = c == U'\t' ? U' ' : c;
        const FT_GlyphSlot slot = TakesRoom(c) && pen <= LABEL_MAX_SIZE ? fonts.Load(c) : nullptr;
        if (slot == nullptr) {
            continue;
        }
        line.glyphs.push_back(Place(slot, pen));
        pen += static_cast<int>((slot->advance.x + 32) / 64);
        const PlacedGlyph& glyph = line.glyphs.back();
        line.left = std::min(line.left, glyph.x);
        line.right = std::max({line.right, pen, glyph.x + glyph.width});
    }
    return line;
}

std::vector<PlacedLine> PlaceLines(const std::string& text) {
    const std::u32string characters = DecodeUtf8(text);
    std::u32string_view rest = characters;
    std::vector<PlacedLine> lines;
    while (true) {
        const std::size_t end = rest.find(U'\n');
        lines.push_back(PlaceLine(LabelFonts::OfProcess(), rest.substr(0, end)));
        if (end == std::u32string_view::npos) {
            return lines;
        }
        rest.remove_prefix(end + 1);
    }
}

// What lies outside of the picture is cut off.
void Draw(const PlacedGlyph& glyph, int originX, int originY, LabelPicture& picture) {
    const int rowBytes = (glyph.width + 7) / 8;
    for (int row = 0; row < glyph.rows; ++row) {
        const int y = originY + glyph.y + row;
        if (y < 0 || y >= picture.height) {
            continue;
        }
        const unsigned char* bits = glyph.bits.data() + static_cast<std::ptrdiff_t>(row) * rowBytes;
        unsigned char* pixels = picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.width;
        for (int column = 0; column < glyph.width; ++column) {
            if (((static_cast<unsigned int>(bits[column / 8]) << (column % 8)) & 0x80U) != 0) {
                pixels[originX + glyph.x + column] = 255;
            }
        }
    }
}

} // namespace

LabelPicture RasterizeLabel(const std::string& text) {
    const std::vector<PlacedLine> lines = PlaceLines(text);
    int left = 0;
    int right = 0;
    for (const PlacedLine& line : lines) {
        left = std::min(left, line.left);
        right = std::max(right, line.right);
    }
    const int width = right - left;
    if (width <= 0 || width > LABEL_MAX_SIZE || lines.size() > LABEL_MAX_SIZE / LABEL_CELL_ROWS) {
        return {};
    }
    LabelPicture picture{width, static_cast<int>(lines.size()) * LABEL_CELL_ROWS, {}};
    picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    int baseline = LABEL_BASELINE;
    for (const PlacedLine& line : lines) {
        for (const PlacedGlyph& glyph : line.glyphs) {
            Draw(glyph, -left, baseline, picture);
        }
        baseline += LABEL_CELL_ROWS;
    }
    return picture;
}

} // namespace KOVA::Quorvex::platform
