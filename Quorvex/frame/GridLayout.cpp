#include <Quorvex/frame/GridLayout.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace KOVA::Quorvex {

namespace {

constexpr int PLAIN_EXPONENTS = 6; // spacings from 10^-6 to 10^6 are written without a power of ten
constexpr double MOST_LINES = 4096.0;
constexpr double LARGEST_COUNT = 1e15; // beyond it neighbouring lines have the same coordinate

std::string Write(double value, std::chars_format format, int digits) {
    std::array<char, 400> text; // the longest double has 309 digits before its point
    char* const end = std::to_chars(text.data(), text.data() + text.size(), value, format, digits).ptr;
    return {text.data(), end};
}

} // namespace

double GridSpacing::Value() const {
    // Powers of ten are exact only upwards.
    return exponent >= 0 ? digit * std::pow(10.0, exponent) : digit / std::pow(10.0, -exponent);
}

GridSpacing SpacingFrom(double distance) {
    const int exponent = static_cast<int>(std::floor(std::log10(distance))) - 1; // the logarithm is rounded
    for (int e = exponent;; ++e) {
        for (const int digit : {1, 2, 5}) {
            const GridSpacing spacing{digit, e};
            if (spacing.Value() >= distance) {
                return spacing;
            }
        }
    }
}

std::string GridLabel(long long count, const GridSpacing& spacing) {
    const double value = static_cast<double>(count) * spacing.Value();
    if (count == 0) {
        return "0";
    }
    if (std::abs(spacing.exponent) <= PLAIN_EXPONENTS) {
        return Write(value, std::chars_format::fixed, std::max(0, -spacing.exponent));
    }
    const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value)) + 1e-9));
    return Write(value, std::chars_format::scientific, std::max(0, magnitude - spacing.exponent));
}

std::vector<GridLine> LayGrid(const GridScale& scale, const GridSpacing& spacing) {
    const int minorSteps = spacing.MinorSteps();
    const double step = spacing.Value() / minorSteps;
    const double ends[] = {(-1.0 - scale.offset) / scale.slope / step, (1.0 - scale.offset) / scale.slope / step};
    const double first = std::ceil(std::min(ends[0], ends[1]));
    const double last = std::floor(std::max(ends[0], ends[1]));
    std::vector<GridLine> lines;
    if (!(last - first < MOST_LINES) || !(std::abs(first) < LARGEST_COUNT) || !(std::abs(last) < LARGEST_COUNT)) {
        return lines;
    }
    for (auto count = static_cast<long long>(first); count <= static_cast<long long>(last); ++count) {
        const bool isMajor = count % minorSteps == 0;
        lines.push_back({scale.offset + scale.slope * (static_cast<double>(count) * step), isMajor, count == 0,
                         isMajor ? GridLabel(count / minorSteps, spacing) : std::string()});
    }
    return lines;
}

bool FindAlignedAxes(const double* modelview, int axes[3]) {
    for (int row = 0; row < 3; ++row) {
        axes[row] = -1;
        for (int axis = 0; axis < 3; ++axis) {
            if (std::abs(modelview[axis * 4 + row]) == 1.0) {
                axes[row] = axis;
            }
        }
    }
    return axes[0] >= 0 && axes[1] >= 0 && axes[2] >= 0 && axes[0] != axes[1] && axes[1] != axes[2] &&
           axes[2] != axes[0];
}

} // namespace KOVA::Quorvex
