#include "HistogramPlot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <fmt/format.h>

#include "PlotAxis.h"

namespace KOVA::Quorvex::cli {

namespace {

constexpr double c_width = 1600.0; // in units; a picture of another width is the same, larger or smaller
constexpr double c_height = 1240.0;
constexpr double c_left = 190.0; // of the bars
constexpr double c_binWidth = 5.0;
constexpr double c_right = c_left + 256 * c_binWidth;
constexpr double c_letters = 15.0;
constexpr double c_smallLetters = 13.0;
constexpr std::size_t c_namedPeaks = 10;

constexpr Ink c_paper{255, 255, 255};
constexpr Ink c_text{34, 40, 49};
constexpr Ink c_faint{34, 40, 49, 0.10};
constexpr Ink c_fainter{34, 40, 49, 0.05};
constexpr Ink c_bars{86, 124, 168};
constexpr Ink c_filtered{20, 50, 92};
constexpr Ink c_peaks{196, 98, 16};
constexpr Ink c_lesserPeaks{196, 98, 16, 0.55};
constexpr Ink c_threshold{186, 28, 44};
constexpr Ink c_otsu{22, 122, 84};

double MiddleOf(int level) {
    return c_left + (level + 0.5) * c_binWidth;
}

// A level that is no bin's middle but the border above it: what is larger is on the other side.
double BorderAbove(int level) {
    return c_left + (level + 1.0) * c_binWidth;
}

struct Panel {
    double top, bottom;
    CountAxis axis;
    const char* scale;
    bool showsAll; // of the peaks: on an even scale most would crowd at the foot

    double Height(double count) const { return bottom - std::clamp(axis.At(count), 0.0, 1.0) * (bottom - top); }
};

void DashedLine(Canvas& canvas, double x, double top, double bottom, const Ink& ink) {
    constexpr double dash = 11.0;
    constexpr double gap = 6.0;
    for (double y = top; y < bottom; y += dash + gap) {
        canvas.Fill(x - 1.1, y, x + 1.1, std::min(y + dash, bottom), ink);
    }
}

// A triangle that points down at a place, of lines that overlap.
void Marker(Canvas& canvas, PlotPoint tip, double size, const Ink& ink) {
    constexpr double line = 2.0;
    std::vector<Polyline> lines;
    for (double y = line / 2.0; y <= size - line / 2.0; y += line / 4.0) {
        const double half = std::max(0.0, y * 0.62 - line / 2.0);
        lines.push_back({{tip.x - half, tip.y - y}, {tip.x + half, tip.y - y}});
    }
    canvas.Stroke(lines, line, ink);
}

void DrawCountAxis(Canvas& canvas, const Panel& panel) {
    for (const Tick& tick : panel.axis.Ticks()) {
        const double at = panel.axis.At(tick.value);
        if (at < 0.0 || at > 1.0) {
            continue;
        }
        const double y = panel.Height(tick.value);
        canvas.Fill(c_left, y - 0.5, c_right, y + 0.5, tick.labelled ? c_faint : c_fainter);
        canvas.Fill(c_left - (tick.labelled ? 8.0 : 4.0), y - 0.75, c_left, y + 0.75, c_text);
        if (tick.labelled) {
            canvas.Text(ShortCount(tick.value), {c_left - 15.0, y + c_letters / 2.0}, Anchor::right, c_letters, c_text);
        }
    }
    canvas.TextUpwards(fmt::format("voxels, {} scale", panel.scale), {62.0, (panel.top + panel.bottom) / 2.0},
                       c_letters, c_text);
}

void DrawLevelAxis(Canvas& canvas, const Panel& panel) {
    for (int level = 0; level <= 255; level += level == 250 ? 5 : 10) {
        const bool labelled = (level % 50 == 0 && level < 250) || level == 255;
        const double x = MiddleOf(level);
        if (labelled && level < 255) {
            canvas.Fill(x - 0.5, panel.top, x + 0.5, panel.bottom, c_faint);
        }
        canvas.Fill(x - 0.75, panel.bottom, x + 0.75, panel.bottom + (labelled ? 8.0 : 4.0), c_text);
        if (labelled) {
            canvas.Text(fmt::format("{}", level), {x, panel.bottom + 15.0 + c_letters}, Anchor::centre, c_letters,
                        c_text);
        }
    }
}

void DrawFrame(Canvas& canvas, const Panel& panel) {
    constexpr double line = 1.5;
    canvas.Fill(c_left - line, panel.top, c_left, panel.bottom + line, c_text);
    canvas.Fill(c_left - line, panel.bottom, c_right, panel.bottom + line, c_text);
}

// A bar that is higher than the panel is broken near its top, and tells its count.
void BreakBar(Canvas& canvas, const Panel& panel, int level, double count) {
    const double x = MiddleOf(level);
    const double y = panel.top + 22.0;
    canvas.Stroke({{{x - 6.0, y + 3.0}, {x + 6.0, y - 3.0}}}, 4.0, c_paper);
    canvas.Text(fmt::format("{} voxels", LongCount(static_cast<std::uint64_t>(count))),
                {x + 12.0, panel.top + c_smallLetters + 2.0}, Anchor::left, c_smallLetters, c_bars);
}

void DrawBars(Canvas& canvas, const Panel& panel, const HistogramFacts& facts) {
    for (int level = 0; level < 256; ++level) {
        const auto count = static_cast<double>(facts.summary.histogram[static_cast<std::size_t>(level)]);
        if (count > 0.0) {
            // What is there is seen, however little it is.
            const double top = std::min(panel.Height(count), panel.bottom - 1.0);
            canvas.Fill(c_left + level * c_binWidth, top, c_left + (level + 1) * c_binWidth - 0.6, panel.bottom,
                        c_bars);
        }
    }
    if (facts.filtered) {
        Polyline line;
        for (int level = 0; level < 256; ++level) {
            line.push_back({MiddleOf(level), panel.Height((*facts.filtered)[static_cast<std::size_t>(level)])});
        }
        canvas.Stroke({line}, 1.8, c_filtered);
    }
    for (std::size_t level = 0; level < 256; ++level) {
        const auto count = static_cast<double>(facts.summary.histogram[level]);
        if (panel.axis.At(count) > 1.0) {
            BreakBar(canvas, panel, static_cast<int>(level), count);
        }
    }
}

// The counts that peaks were searched in.
double SearchedCount(const HistogramFacts& facts, int level) {
    const auto i = static_cast<std::size_t>(level);
    return facts.filtered ? (*facts.filtered)[i] : static_cast<double>(facts.summary.histogram[i]);
}

// Marks the highest peaks and writes their levels beside them, unless a higher one's is in the way; the others are
// marked faintly where there is room for them.
void DrawPeaks(Canvas& canvas, const Panel& panel, const HistogramFacts& facts) {
    const auto tip = [&](int level) {
        const auto count = static_cast<double>(facts.summary.histogram[static_cast<std::size_t>(level)]);
        return PlotPoint{MiddleOf(level),
                         std::min(panel.Height(count), panel.Height(SearchedCount(facts, level))) - 4.0};
    };
    for (const HistogramFacts::Peak& peak : facts.peaks) {
        if (panel.showsAll) {
            Marker(canvas, tip(peak.level), 6.0, c_lesserPeaks);
        }
    }
    std::vector<HistogramFacts::Peak> named = HighestPeaks(facts, c_namedPeaks);
    std::stable_sort(named.begin(), named.end(), [](const auto& a, const auto& b) { return a.count > b.count; });
    std::vector<int> taken;
    for (const HistogramFacts::Peak& peak : named) {
        const auto isNear = [&peak](int level) { return std::abs(level - peak.level) < 9; };
        const PlotPoint at = tip(peak.level);
        Marker(canvas, at, 9.0, c_peaks);
        if (std::none_of(taken.begin(), taken.end(), isNear)) {
            taken.push_back(peak.level);
            canvas.HaloedText(fmt::format("{}", peak.level), {at.x, at.y - 15.0}, c_smallLetters, c_peaks, c_paper);
        }
    }
}

void DrawThresholds(Canvas& canvas, const Panel& panel, const HistogramFacts& facts) {
    constexpr double above = 26.0;
    const auto draw = [&](int level, const Ink& ink, bool leftwards) {
        const double x = BorderAbove(level);
        DashedLine(canvas, x, panel.top - above, panel.bottom, ink);
        canvas.Text(fmt::format("{}", level), {x + (leftwards ? -7.0 : 7.0), panel.top - above + c_smallLetters},
                    leftwards ? Anchor::right : Anchor::left, c_smallLetters, ink);
    };
    const bool isBelow = facts.threshold && facts.summary.parts && *facts.threshold <= facts.summary.parts->threshold;
    if (facts.threshold) {
        draw(*facts.threshold, c_threshold, isBelow);
    }
    if (facts.summary.parts) {
        draw(facts.summary.parts->threshold, c_otsu, !isBelow);
    }
}

void DrawPanel(Canvas& canvas, const Panel& panel, const HistogramFacts& facts) {
    DrawCountAxis(canvas, panel);
    DrawLevelAxis(canvas, panel);
    DrawBars(canvas, panel, facts);
    DrawFrame(canvas, panel);
    DrawThresholds(canvas, panel, facts);
    DrawPeaks(canvas, panel, facts);
}

void DrawTitle(Canvas& canvas, const HistogramFacts& facts, const std::string& title) {
    constexpr double letters = 22.0;
    const double fitting =
        TextWidth(title) * letters > c_right - c_left ? (c_right - c_left) / TextWidth(title) : letters;
    canvas.Text(title, {c_left, 62.0}, Anchor::left, fitting, c_text);
    const VolumeSummary& summary = facts.summary;
    canvas.Text(fmt::format("{} voxels, {} to {}, mean {:.1f}", LongCount(summary.voxels), summary.low, summary.high,
                            summary.mean),
                {c_left, 96.0}, Anchor::left, c_letters, c_text);
}

// A line of the legend: a sign and what it means.
template <class Sign> void Explain(Canvas& canvas, PlotPoint at, const std::string& text, Sign sign) {
    sign(PlotPoint{at.x + 14.0, at.y - c_letters / 2.0});
    canvas.Text(text, {at.x + 40.0, at.y}, Anchor::left, c_letters, c_text);
}

void DrawLegend(Canvas& canvas, const HistogramFacts& facts) {
    constexpr double rows[] = {c_height - 62.0, c_height - 30.0};
    constexpr double columns[] = {c_left, c_left + 640.0};
    const std::string found = fmt::format("{} peaks{}", facts.peaks.size(),
                                          facts.peaks.size() > c_namedPeaks ? ", the highest with their levels" : "");
    Explain(canvas, {columns[0], rows[0]}, found, [&](PlotPoint at) {
        Marker(canvas, {at.x, at.y + 5.0}, 9.0, c_peaks);
    });
    if (facts.filtered) {
        Explain(canvas, {columns[0], rows[1]}, fmt::format("after a median filter of width {}", facts.median),
                [&](PlotPoint at) {
                    canvas.Stroke({{{at.x - 12.0, at.y}, {at.x + 12.0, at.y}}}, 1.8, c_filtered);
                });
    }
    const auto dashes = [&canvas](const Ink& ink) {
        return [&canvas, ink](PlotPoint at) { DashedLine(canvas, at.x, at.y - 14.0, at.y + 14.0, ink); };
    };
    if (facts.threshold) {
        Explain(canvas, {columns[1], rows[0]},
                fmt::format("half-way between background {} and material {}: {}", *facts.background, *facts.material,
                            *facts.threshold),
                dashes(c_threshold));
    }
    if (facts.summary.parts) {
        Explain(canvas, {columns[1], rows[1]},
                fmt::format("parts the voxels best, by variance: {} ({:.2f} % above)", facts.summary.parts->threshold,
                            facts.summary.parts->materialShare * 100.0),
                dashes(c_otsu));
    }
}

// Up to where an even scale goes. Where one intensity, as a rule that of air, has many times as many voxels as all that
// are not close to it, nothing of those could be seen beside it.
double ShownEvenly(const std::array<std::uint64_t, 256>& counts) {
    constexpr int close = 3;
    constexpr double most = 20.0;
    int highest = 0;
    for (int level = 0; level < 256; ++level) {
        highest = counts[static_cast<std::size_t>(level)] > counts[static_cast<std::size_t>(highest)] ? level : highest;
    }
    std::uint64_t others = 0;
    for (int level = 0; level < 256; ++level) {
        others = std::abs(level - highest) > close ? std::max(others, counts[static_cast<std::size_t>(level)]) : others;
    }
    const auto first = static_cast<double>(counts[static_cast<std::size_t>(highest)]);
    const auto second = static_cast<double>(others);
    return std::max(1.0, others > 0 && first > most * second ? second * 1.3 : first);
}

} // namespace

Canvas DrawHistogram(const HistogramFacts& facts, const std::string& title, unsigned int width) {
    const auto& counts = facts.summary.histogram;
    const auto largest = std::max(1.0, static_cast<double>(*std::max_element(counts.begin(), counts.end())));
    const double scale = width / c_width;
    Canvas canvas({width, static_cast<unsigned int>(std::lround(c_height * scale))}, scale, c_paper);
    DrawTitle(canvas, facts, title);
    DrawPanel(canvas, {160.0, 570.0, CountAxis(ShownEvenly(counts), false), "linear", false}, facts);
    DrawPanel(canvas, {670.0, 1080.0, CountAxis(largest, true), "logarithmic", true}, facts);
    canvas.Text("intensity", {(c_left + c_right) / 2.0, 1140.0}, Anchor::centre, c_letters, c_text);
    DrawLegend(canvas, facts);
    return canvas;
}

} // namespace KOVA::Quorvex::cli
