#pragma once

#include <string>
#include <vector>

// Seam: the system's font renderer.

namespace KOVA::Quorvex::platform {

// Every line of a label is a cell of this many rows; its baseline is the lower edge of row LABEL_BASELINE - 1, so that
// capital letters stand on it with their feet in that row.
constexpr int LABEL_CELL_ROWS = 40;
constexpr int LABEL_BASELINE = 32;

// A label's pixels, one byte each, top row first, rows not padded: 255 where there is a glyph, 0 elsewhere, nothing in
// between. No label has no pixels, and then both sizes are 0.
struct LabelPicture {
    int width = 0;
    int height = 0; // LABEL_CELL_ROWS for each line
    std::vector<unsigned char> pixels;
};

// Rasterises a text in a bold sans-serif face (Arial or what the system has in its place). The text is UTF-8; on
// Windows it is in the process's code page. Lines end with \n or \r\n and start at the left edge; other control
// characters take no room, but for the tabulator, which is a blank. Characters that the face lacks come from other
// fonts; one that no font has is shown as the sign for missing characters.
//
// No picture, and no other sign of it, for a text without anything that takes room, when the system has no font, when
// the library was built without a font renderer, and when the picture would be wider or higher than LABEL_MAX_SIZE.
constexpr int LABEL_MAX_SIZE = 16384;
LabelPicture RasterizeLabel(const std::string& text);

} // namespace KOVA::Quorvex::platform
