#pragma once

#include <string_view>
#include <vector>

#include "RenderOptions.h"
#include "StrokeFont.h"

// A picture that is drawn without a graphics driver: boxes, lines and text with soft edges. Coordinates and widths are
// in units that are scale pixels each, from the top left corner of the picture, y downwards.

namespace KOVA::Quorvex::cli {

struct Ink {
    unsigned char r, g, b;
    double opacity = 1.0;
};

// Which point of a text stands where it is asked for, at the height of its baseline.
enum class Anchor { left, centre, right };

class Canvas {
public:
    Canvas(PictureSize size, double scale, const Ink& background); // size in pixels

    void Fill(double left, double top, double right, double bottom, const Ink& ink);

    // All lines together with one ink: where they cross, it is not laid on twice.
    void Stroke(std::vector<Polyline> lines, double width, const Ink& ink);

    // height is that of a capital.
    void Text(std::string_view text, PlotPoint at, Anchor anchor, double height, const Ink& ink);
    // Centred, and readable on anything: the paper's ink is laid around the letters first.
    void HaloedText(std::string_view text, PlotPoint at, double height, const Ink& ink, const Ink& paper);

    void TextUpwards(std::string_view text, PlotPoint middle, double height, const Ink& ink);

    PictureSize Size() const { return m_size; }

    // Rows from the top, 3 bytes (R, G, B) a pixel.
    const std::vector<unsigned char>& Pixels() const { return m_pixels; }

private:
    void Blend(std::size_t x, std::size_t y, const Ink& ink, double coverage);

    PictureSize m_size;
    double m_scale;
    std::vector<unsigned char> m_pixels;
};

} // namespace KOVA::Quorvex::cli
