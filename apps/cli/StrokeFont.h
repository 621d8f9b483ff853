#pragma once

#include <string_view>
#include <vector>

// A font of lines, as plotters draw it, for text in pictures that no graphics driver takes part in: it looks the same
// on every system and needs nothing installed. Text is UTF-8; it has the characters of ASCII and the letters of western
// Europe, and others become boxes.

namespace KOVA::Quorvex::cli {

struct PlotPoint {
    double x, y;
};

// Points to be joined in their order.
using Polyline = std::vector<PlotPoint>;

// Widths are for capitals of height 1.
double TextWidth(std::string_view text);

// The lines of a text whose capitals are that high, y downwards, with (0, 0) where its baseline begins.
std::vector<Polyline> TextLines(std::string_view text, double capitalHeight);

// The line width that goes with it.
double TextLineWidth(double capitalHeight);

} // namespace KOVA::Quorvex::cli
