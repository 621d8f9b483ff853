#include "TransferFunction.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>

#include <fmt/format.h>

#include "Failure.h"
#include "FileReason.h"

namespace KOVA::Quorvex::apps {

namespace {

constexpr int c_last = 255;

// How an intensity becomes a grey level and what share of its opacity it has: a ramp each.
struct Ramp {
    double begin;
    double end;

    float At(int intensity) const {
        return static_cast<float>(std::clamp((intensity - begin) / std::max(end - begin, 1e-3), 0.0, 1.0));
    }
};

// Dim and warm at the surface, where voxels are half air, to nearly white in what is densest.
ColorRGBA Tint(float grey) {
    return {0.78F + 0.20F * grey, 0.69F + 0.28F * grey, 0.60F + 0.35F * grey};
}

// Of one voxel size, so that a way through two fifths of the volume lets 5 % through.
float GlassOpacity(std::size_t longestAxis) {
    const double way = std::max(1.0, 0.4 * 2.0 * static_cast<double>(longestAxis));
    return static_cast<float>(1.0 - std::pow(0.05, 1.0 / way));
}

TransferTable Build(const Ramp& opacity, const Ramp& grey, VolumeAttribute::RenderMode mode, std::size_t longestAxis) {
    const bool projection = mode == VolumeAttribute::MinimumIntensity || mode == VolumeAttribute::MaximumIntensity;
    const float solid = mode == VolumeAttribute::Unshaded ? GlassOpacity(longestAxis) : 1.0F;
    TransferTable table{};
    for (int i = 0; i <= c_last; ++i) {
        const float share = opacity.At(i);
        const float level = grey.At(i);
        ColorRGBA& color = table[static_cast<std::size_t>(i)];
        if (projection) { // opacity takes no part, but what has none is not there
            color = {level, level, level, share > 0.0F ? 1.0F : 0.0F};
        } else {
            color = Tint(level);
            color.a = share * solid * (mode == VolumeAttribute::Unshaded ? 0.25F + 0.75F * level : 1.0F);
        }
    }
    return table;
}

// The level below which all but one in a thousand of the voxels lie.
int BrightLevel(const VolumeSummary& summary) {
    std::uint64_t above = 0;
    for (int level = summary.high; level > summary.low; --level) {
        above += summary.histogram[static_cast<std::size_t>(level)];
        if (above * 1000 > summary.voxels) {
            return level;
        }
    }
    return summary.high;
}

float ParseShare(const char*& text, const char* end) {
    while (text != end && (*text == ' ' || *text == '\t')) {
        ++text;
    }
    float value = 0.0F;
    const auto [next, error] = std::from_chars(text, end, value);
    if (error != std::errc() || !(value >= 0.0F && value <= 1.0F)) {
        return -1.0F;
    }
    text = next;
    return value;
}

bool ParseEntry(const std::string& line, ColorRGBA& color) {
    const char* text = line.data();
    const char* const end = text + line.find_last_not_of(" \t\r") + 1;
    for (float* channel : {&color.r, &color.g, &color.b, &color.a}) {
        *channel = ParseShare(text, end);
        if (*channel < 0.0F) {
            return false;
        }
    }
    return text == end;
}

} // namespace

TransferTable DefaultTransferFunction(const VolumeSummary& summary, VolumeAttribute::RenderMode mode,
                                      std::size_t longestAxis) {
    if (!summary.parts) { // all voxels alike: a solid block, or nothing
        const double level = std::max(summary.high, 1);
        return Build({level - 1, level}, {0, level}, mode, longestAxis);
    }
    const VolumeSummary::Parts& parts = *summary.parts;
    // Soft on the side of the material, where noise is no matter; steep on that of the air, where it would be fog.
    const double threshold = parts.threshold + 0.5;
    const double toMaterial = std::max(parts.material - threshold, 2.0);
    const double toAir = std::max(threshold - parts.air, 2.0);
    const int bright = BrightLevel(summary);
    if (mode == VolumeAttribute::MaximumIntensity) {
        return Build({parts.air + 0.25 * toAir, parts.air + 0.5 * toAir},
                     {static_cast<double>(parts.air), static_cast<double>(bright)}, mode, longestAxis);
    }
    return Build({threshold - 0.1 * toAir, threshold + 0.35 * toMaterial},
                 {threshold, std::max<double>(bright, threshold + 2.0)}, mode, longestAxis);
}

TransferTable WindowTransferFunction(const IntensityWindow& window, VolumeAttribute::RenderMode mode,
                                     std::size_t longestAxis) {
    const double low = window.low;
    TransferTable table = Build({low - 1, low}, {low, static_cast<double>(window.high)}, mode, longestAxis);
    for (int i = window.high + 1; i <= c_last; ++i) {
        table[static_cast<std::size_t>(i)].a = 0.0F;
    }
    return table;
}

TransferTable SliceTransferFunction(const VolumeSummary& summary) {
    const Ramp grey{static_cast<double>(summary.low), static_cast<double>(BrightLevel(summary))};
    const int airEnds = summary.parts ? (summary.parts->air + summary.parts->threshold) / 2 : 0;
    TransferTable table{};
    for (int i = 0; i <= c_last; ++i) {
        const float level = grey.At(i);
        table[static_cast<std::size_t>(i)] = {level, level, level, i > airEnds ? 1.0F : 0.0F};
    }
    return table;
}

TransferTable ReadTransferFunction(const std::string& path) {
    std::ifstream file(path);
    const std::string reason = ReasonOfSystem(path);
    if (!file || !reason.empty()) {
        throw Failure(fmt::format("cannot read '{}': {}", path, reason.empty() ? "it cannot be opened" : reason));
    }
    TransferTable table{};
    std::string line;
    std::size_t count = 0;
    while (std::getline(file, line)) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        if (count == table.size()) {
            throw Failure(fmt::format("cannot use '{}': it has more than {} lines", path, table.size()));
        }
        if (!ParseEntry(line, table[count])) {
            throw Failure(fmt::format(
                "cannot use '{}': the line for intensity {} is not 'r g b a' with numbers from 0 to 1", path, count));
        }
        ++count;
    }
    if (count != table.size()) {
        throw Failure(fmt::format("cannot use '{}': it has {} lines instead of {}", path, count, table.size()));
    }
    return table;
}

} // namespace KOVA::Quorvex::apps
