#include "Canvas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace KOVA::Quorvex::cli {

namespace {

double Distance(const PlotPoint& p, const PlotPoint& a, const PlotPoint& b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

// Pixels along one axis.
struct Span {
    std::size_t first, end;
};

// Those of a span that a range of coordinates touches.
Span Touched(double from, double to, Span within) {
    const auto inside = [within](double value) {
        return static_cast<std::size_t>(
            std::clamp(value, static_cast<double>(within.first), static_cast<double>(within.end)));
    };
    return {inside(std::floor(from)), inside(std::ceil(to))};
}

// The share of pixel i that lies in the range.
double Covered(std::size_t i, double from, double to) {
    const auto low = static_cast<double>(i);
    return std::max(0.0, std::min(to, low + 1.0) - std::max(from, low));
}

struct Bounds {
    double left, top, right, bottom;
};

Bounds BoundsOf(const std::vector<Polyline>& lines, double margin) {
    Bounds bounds{1e9, 1e9, -1e9, -1e9};
    for (const Polyline& line : lines) {
        for (const PlotPoint& point : line) {
            bounds.left = std::min(bounds.left, point.x - margin);
            bounds.top = std::min(bounds.top, point.y - margin);
            bounds.right = std::max(bounds.right, point.x + margin);
            bounds.bottom = std::max(bounds.bottom, point.y + margin);
        }
    }
    return bounds;
}

// Pixels and how much of them lines cover.
class Mask {
public:
    Mask(Span columns, Span rows)
        : m_columns(columns), m_rows(rows), m_coverage((columns.end - columns.first) * (rows.end - rows.first)) {}

    // A pixel is covered as far as its middle is inside the line's edge.
    void Add(const PlotPoint& a, const PlotPoint& b, double width) {
        const double reach = width / 2.0 + 0.5;
        const Span columns = Touched(std::min(a.x, b.x) - reach, std::max(a.x, b.x) + reach, m_columns);
        const Span rows = Touched(std::min(a.y, b.y) - reach, std::max(a.y, b.y) + reach, m_rows);
        for (std::size_t y = rows.first; y < rows.end; ++y) {
            for (std::size_t x = columns.first; x < columns.end; ++x) {
                const PlotPoint middle{static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5};
                double& coverage = At(x, y);
                coverage = std::max(coverage, std::clamp(reach - Distance(middle, a, b), 0.0, std::min(1.0, width)));
            }
        }
    }

    double& At(std::size_t x, std::size_t y) {
        return m_coverage[(y - m_rows.first) * (m_columns.end - m_columns.first) + x - m_columns.first];
    }

private:
    Span m_columns;
    Span m_rows;
    std::vector<double> m_coverage;
};

std::vector<Polyline> PlacedText(std::string_view text, PlotPoint at, Anchor anchor, double height) {
    const double width = TextWidth(text) * height;
    const double start = anchor == Anchor::left ? 0.0 : anchor == Anchor::centre ? -width / 2.0 : -width;
    std::vector<Polyline> lines = TextLines(text, height);
    for (Polyline& line : lines) {
        for (PlotPoint& point : line) {
            point = {at.x + start + point.x, at.y + point.y};
        }
    }
    return lines;
}

} // namespace

Canvas::Canvas(PictureSize size, double scale, const Ink& background)
    : m_size(size), m_scale(scale), m_pixels(std::size_t{size.width} * size.height * 3) {
    Fill(0.0, 0.0, size.width / scale, size.height / scale, background);
}

void Canvas::Blend(std::size_t x, std::size_t y, const Ink& ink, double coverage) {
    unsigned char* const pixel = &m_pixels[(y * m_size.width + x) * 3];
    const double share = coverage * ink.opacity;
    const unsigned char colors[] = {ink.r, ink.g, ink.b};
    for (int i = 0; i < 3; ++i) {
        pixel[i] = static_cast<unsigned char>(std::lround(pixel[i] + (colors[i] - pixel[i]) * share));
    }
}

void Canvas::Fill(double left, double top, double right, double bottom, const Ink& ink) {
    for (double* side : {&left, &top, &right, &bottom}) {
        *side *= m_scale;
    }
    const Span columns = Touched(left, right, {0, m_size.width});
    const Span rows = Touched(top, bottom, {0, m_size.height});
    for (std::size_t y = rows.first; y < rows.end; ++y) {
        for (std::size_t x = columns.first; x < columns.end; ++x) {
            Blend(x, y, ink, Covered(x, left, right) * Covered(y, top, bottom));
        }
    }
}

void Canvas::Stroke(std::vector<Polyline> lines, double width, const Ink& ink) {
    width *= m_scale;
    for (Polyline& line : lines) {
        for (PlotPoint& point : line) {
            point = {point.x * m_scale, point.y * m_scale};
        }
    }
    const Bounds bounds = BoundsOf(lines, width / 2.0 + 1.0);
    const Span columns = Touched(bounds.left, bounds.right, {0, m_size.width});
    const Span rows = Touched(bounds.top, bounds.bottom, {0, m_size.height});
    if (columns.first >= columns.end || rows.first >= rows.end) {
        return;
    }
    Mask mask(columns, rows);
    for (const Polyline& line : lines) {
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            mask.Add(line[i], line[i + 1], width);
        }
    }
    for (std::size_t y = rows.first; y < rows.end; ++y) {
        for (std::size_t x = columns.first; x < columns.end; ++x) {
            if (mask.At(x, y) > 0.0) {
                Blend(x, y, ink, mask.At(x, y));
            }
        }
    }
}

void Canvas::Text(std::string_view text, PlotPoint at, Anchor anchor, double height, const Ink& ink) {
    Stroke(PlacedText(text, at, anchor, height), TextLineWidth(height), ink);
}

void Canvas::HaloedText(std::string_view text, PlotPoint at, double height, const Ink& ink, const Ink& paper) {
    const std::vector<Polyline> lines = PlacedText(text, at, Anchor::centre, height);
    Stroke(lines, TextLineWidth(height) * 4.0, paper);
    Stroke(lines, TextLineWidth(height), ink);
}

void Canvas::TextUpwards(std::string_view text, PlotPoint middle, double height, const Ink& ink) {
    std::vector<Polyline> lines = PlacedText(text, {0.0, 0.0}, Anchor::centre, height);
    for (Polyline& line : lines) {
        for (PlotPoint& point : line) {
            point = {middle.x + point.y, middle.y - point.x};
        }
    }
    Stroke(lines, TextLineWidth(height), ink);
}

} // namespace KOVA::Quorvex::cli
