#include "StrokeFont.h"

#include <array>
#include <cstddef>

namespace KOVA::Quorvex::cli {

namespace {

// Points on a grid, x and y a digit each that goes on with letters after 9: baseline at y = 4, small letters up to 14,
// capitals to 18. A point after ~ is not passed but pulls the line on its way between its neighbours; | begins a new
// line. A point alone or twice is a dot.
struct Glyph {
    int width;
    std::string_view lines;
};

constexpr int c_baseline = 4;
constexpr int c_capital = 14;
constexpr double c_gap = 3.6;

// From the blank to the tilde.
constexpr std::array<Glyph, 95> c_glyphs{{
    {4, ""},
    {0, "0i 09|04 04"},
    {3, "0i 0e|3i 3e"},
    {10, "0d ad|09 a9|34 4i|74 8i"},
    {10, "9f ~9i 5i ~0i 0f ~0b 5b ~ab a8 ~a4 54 ~04 07|52 5k"},
    {11, "2i ~4i 4f ~4c 2c ~0c 0f ~0i 2i|9a ~ba b7 ~b4 94 ~74 77 ~7a 9a|14 ai"},
    {10, "a4 2e ~2i 4i ~7i 7f ~7d 3b ~09 08 ~04 44 ~84 9a"},
    {0, "0i 0e"},
    {3, "3j ~0f 0a ~05 31"},
    {3, "0j ~3f 3a ~35 01"},
    {8, "4i 4c|1h 7d|7h 1d"},
    {8, "0a 8a|46 4e"},
    {1, "14 02"},
    {5, "0a 5a"},
    {0, "04 04"},
    {7, "02 7j"},
    {8, "4i ~8i 8b ~84 44 ~04 0b ~0i 4i"},
    {8, "2f 5i 54"},
    {8, "0e ~0i 4i ~8i 8e ~8b 04 84"},
    {8, "0f ~0i 4i ~8i 8f ~8b 4b 3b|4b ~8b 88 ~84 44 ~04 07"},
    {8, "64 6i 08 88"},
    {8, "7i 1i 0b ~2d 4d ~8d 89 ~84 44 ~04 07"},
    {8, "7h ~6i 4i ~0i 0a ~04 44 ~84 89 ~8d 4d ~0d 09"},
    {8, "0i 8i 34"},
    {8, "4i ~7i 7f ~7b 4b ~1b 1f ~1i 4i|4b ~8b 88 ~84 44 ~04 08 ~0b 4b"},
    {8, "15 ~24 44 ~84 8c ~8i 4i ~0i 0d ~09 49 ~89 8d"},
    {0, "04 04|0d 0d"},
    {1, "1d 1d|14 02"},
    {8, "8f 0a 85"},
    {8, "08 88|0c 8c"},
    {8, "0f 8a 05"},
    {8, "0f ~0i 4i ~8i 8f ~8c 4a 48|44 44"},
    {12, "7d 77 ~76 97 ~c8 cb ~ci 6i ~0i 0b ~04 64 ~84 95|7a ~7d 5d ~3d 3a ~37 57 ~77 7a"},
    {10, "04 5i a4|29 89"},
    {10, "04 0i 5i ~9i 9f ~9b 5b 0b|5b ~ab a8 ~a4 54 04"},
    {10, "ae ~ai 5i ~0i 0b ~04 54 ~a4 a8"},
    {10, "04 0i 4i ~ai ab ~a4 44 04"},
    {9, "9i 0i 04 94|0b 7b"},
    {9, "9i 0i 04|0b 7b"},
    {10, "ae ~ai 5i ~0i 0b ~04 54 ~a4 aa 6a"},
    {10, "04 0i|a4 ai|0b ab"},
    {0, "04 0i"},
    {7, "7i 78 ~74 44 ~04 08"},
    {9, "04 0i|9i 0a|3d 94"},
    {8, "0i 04 84"},
    {12, "04 0i 6a ci c4"},
    {10, "04 0i a4 ai"},
    {10, "5i ~ai ab ~a4 54 ~04 0b ~0i 5i"},
    {9, "04 0i 5i ~9i 9e ~9a 5a 0a"},
    {11, "5i ~ai ab ~a4 54 ~04 0b ~0i 5i|68 b3"},
    {9, "04 0i 5i ~9i 9e ~9a 5a 0a|5a 94"},
    {10, "9f ~9i 5i ~0i 0f ~0b 5b ~ab a8 ~a4 54 ~04 07"},
    {10, "0i ai|5i 54"},
    {10, "0i 09 ~04 54 ~a4 a9 ai"},
    {10, "0i 54 ai"},
    {12, "0i 34 6f 94 ci"},
    {10, "04 ai|0i a4"},
    {10, "0i 5b ai|5b 54"},
    {10, "0i ai 04 a4"},
    {3, "3j 0j 01 31"},
    {7, "0j 72"},
    {3, "0j 3j 31 01"},
    {8, "0d 4i 8d"},
    {8, "02 82"},
    {2, "0i 2f"},
    {8, "8e 84|89 ~8e 4e ~0e 09 ~04 44 ~84 89"},
    {8, "0i 04|09 ~0e 4e ~8e 89 ~84 44 ~04 09"},
    {7, "7c ~7e 4e ~0e 09 ~04 44 ~74 76"},
    {8, "8i 84|89 ~8e 4e ~0e 09 ~04 44 ~84 89"},
    {8, "09 89 ~8e 4e ~0e 09 ~04 44 ~74 86"},
    {5, "5i ~2i 2f 24|0e 5e"},
    {8, "8e 83 ~80 40 ~10 12|89 ~8e 4e ~0e 09 ~04 44 ~84 89"},
    {8, "0i 04|09 ~0e 4e ~8e 89 84"},
    {0, "04 0e|0i 0i"},
    {3, "3e 32 ~30 00|3i 3i"},
    {7, "0i 04|7e 08|3b 74"},
    {2, "0i 06 ~04 24"},
    {12, "0e 04|09 ~0e 3e ~6e 69 64|69 ~6e 9e ~ce c9 c4"},
    {8, "0e 04|09 ~0e 4e ~8e 89 84"},
    {8, "4e ~8e 89 ~84 44 ~04 09 ~0e 4e"},
    {8, "0e 00|09 ~0e 4e ~8e 89 ~84 44 ~04 09"},
    {8, "8e 80|89 ~8e 4e ~0e 09 ~04 44 ~84 89"},
    {5, "0e 04|09 ~0e 5e"},
    {7, "7c ~7e 3e ~0e 0c ~09 39 ~79 77 ~74 34 ~04 06"},
    {5, "2i 27 ~24 54|0e 5e"},
    {8, "0e 09 ~04 44 ~84 89|8e 84"},
    {8, "0e 44 8e"},
    {10, "0e 24 5c 84 ae"},
    {8, "04 8e|0e 84"},
    {8, "0e 44|8e 44 20"},
    {8, "0e 8e 04 84"},
    {4, "4j ~2j 2g 2c ~2a 0a ~2a 28 24 ~21 41"},
    {0, "0k 01"},
    {4, "0j ~2j 2g 2c ~2a 4a ~2a 28 24 ~21 01"},
    {8, "09 ~1d 4a ~77 8b"},
}};
constexpr Glyph c_box{8, "04 84 8i 0i 04"};

const Glyph& GlyphOf(char character) {
    return character >= ' ' && character <= '~' ? c_glyphs[static_cast<std::size_t>(character - ' ')] : c_box;
}

// The bytes of UTF-8 that go on with a character.
bool IsContinued(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

double Coordinate(char digit) {
    return digit <= '9' ? digit - '0' : digit - 'a' + 10;
}

PlotPoint Between(const PlotPoint& a, const PlotPoint& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

// Goes on from the last point to the next one, pulled towards a third.
void AppendCurve(Polyline& line, const PlotPoint& pull, const PlotPoint& next) {
    constexpr int steps = 8;
    const PlotPoint start = line.back();
    for (int i = 1; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        line.push_back(Between(Between(start, pull, t), Between(pull, next, t), t));
    }
}

// place turns a point of the grid into one of the picture.
template <class Place> void AppendGlyph(std::string_view text, Place place, std::vector<Polyline>& lines) {
    bool pulled = false;
    PlotPoint pull{};
    bool begins = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '|' || text[i] == ' ') {
            begins = begins || text[i] == '|';
            continue;
        }
        if (text[i] == '~') {
            pulled = true;
            continue;
        }
        const PlotPoint point = place(Coordinate(text[i]), Coordinate(text[i + 1]));
        ++i;
        if (pulled && text[i - 2] == '~') {
            pull = point;
        } else if (begins) {
            lines.push_back({point});
            begins = false;
        } else if (pulled) {
            AppendCurve(lines.back(), pull, point);
            pulled = false;
        } else {
            lines.back().push_back(point);
        }
    }
}

} // namespace

double TextWidth(std::string_view text) {
    double width = 0.0;
    for (const char character : text) {
        width += IsContinued(character) ? 0.0 : GlyphOf(character).width + c_gap;
    }
    return width > 0.0 ? (width - c_gap) / c_capital : 0.0;
}

std::vector<Polyline> TextLines(std::string_view text, double capitalHeight) {
    const double unit = capitalHeight / c_capital;
    std::vector<Polyline> lines;
    double start = 0.0;
    for (const char character : text) {
        if (IsContinued(character)) {
            continue;
        }
        const Glyph& glyph = GlyphOf(character);
        AppendGlyph(
            glyph.lines,
            [&](double x, double y) {
                return PlotPoint{(start + x) * unit, (c_baseline - y) * unit};
            },
            lines);
        start += glyph.width + c_gap;
    }
    return lines;
}

double TextLineWidth(double capitalHeight) {
    return capitalHeight * 0.125;
}

} // namespace KOVA::Quorvex::cli
