#include "RenderOptions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <span>
#include <stdexcept>

#include <fmt/format.h>

namespace KOVA::Quorvex::cli {

namespace {

template <class T> struct Choice {
    std::string_view name;
    T value;
};

constexpr std::array<Choice<Side>, 7> c_sides{{{"front", Side::Front},
                                               {"back", Side::Back},
                                               {"left", Side::Left},
                                               {"right", Side::Right},
                                               {"top", Side::Top},
                                               {"bottom", Side::Bottom},
                                               {"iso", Side::Iso}}};

constexpr std::array<Choice<Projection>, 2> c_projections{
    {{"perspective", Projection::Perspective}, {"orthogonal", Projection::Orthogonal}}};

constexpr std::array<Choice<MeshAttribute::RenderMode>, 6> c_meshModes{
    {{"surface", MeshAttribute::RENDER_SURFACE},
     {"wireframe", MeshAttribute::RENDER_WIREFRAME},
     {"surface-wireframe", MeshAttribute::RENDER_SURFACE_WIREFRAME},
     {"hidden-line", MeshAttribute::RENDER_HIDDEN_LINE},
     {"xray", MeshAttribute::RENDER_XRAY},
     {"points", MeshAttribute::RENDER_POINTS}}};

constexpr std::array<Choice<VolumeAttribute::RenderMode>, 4> c_volumeModes{
    {{"shaded", VolumeAttribute::Shaded},
     {"unshaded", VolumeAttribute::Unshaded},
     {"min", VolumeAttribute::MinimumIntensity},
     {"max", VolumeAttribute::MaximumIntensity}}};

template <class T> std::string Names(std::span<const Choice<T>> choices, std::string_view separator) {
    std::string names;
    for (const Choice<T>& choice : choices) {
        names += names.empty() ? "" : separator;
        names += choice.name;
    }
    return names;
}

template <class T> T Parse(std::span<const Choice<T>> choices, std::string_view text) {
    for (const Choice<T>& choice : choices) {
        if (choice.name == text) {
            return choice.value;
        }
    }
    throw std::invalid_argument(fmt::format("'{}' is none of {}", text, Names(choices, ", ")));
}

// All of the text as a whole number; 0 when it is none (0 itself is never wanted here).
unsigned int WholeNumber(std::string_view text) {
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

// The text before the next comma, or all that is left; takes it off the text.
std::string_view TakeField(std::string_view& text) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view field = text.substr(0, comma);
    text.remove_prefix(std::min(comma + 1, text.size()));
    return field;
}

ColorRGBA ParseColor(std::string_view text) {
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (text.size() != 6 || error != std::errc() || end != text.data() + text.size()) {
        throw std::invalid_argument(fmt::format("'{}' is no colour of the form RRGGBB", text));
    }
    const auto channel = [value](unsigned int shift) { return static_cast<float>((value >> shift) & 0xFFU) / 255.0F; };
    return {channel(16), channel(8), channel(0)};
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

void CheckStereo(const RenderOptions& options) {
    if (options.stereo == STEREO_NONE) {
        return;
    }
    if (options.axes) {
        throw std::invalid_argument("--axes: they are drawn in pictures for one eye only, not with --stereo");
    }
    if (options.meshMode == MeshAttribute::RENDER_XRAY) {
        throw std::invalid_argument("--stereo: X-ray pictures are for one eye only");
    }
    if (options.stereo != STEREO_ANAGLYPH && std::max(options.size.width, options.size.height) > MAX_PASS_SIZE) {
        throw std::invalid_argument(
            fmt::format("--stereo: interleaved pictures have at most {} pixels each way", MAX_PASS_SIZE));
    }
}

} // namespace

PictureSize ParseSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    PictureSize size{0, 0};
    if (cross != std::string_view::npos) {
        size = {WholeNumber(text.substr(0, cross)), WholeNumber(text.substr(cross + 1))};
    }
    if (size.width == 0 || size.height == 0 || size.width > c_maxPictureSize || size.height > c_maxPictureSize) {
        throw std::invalid_argument(
            fmt::format("'{}' is no size of the form 800x600 with 1 to {} pixels each way", text, c_maxPictureSize));
    }
    return size;
}

double ParseNumber(std::string_view text, double low, double high) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= low && value <= high)) {
        throw std::invalid_argument(fmt::format("'{}' is no number from {} to {}", text, low, high));
    }
    return value;
}

Background ParseBackground(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) {
        const ColorRGBA color = ParseColor(text);
        return {color, color};
    }
    return {ParseColor(text.substr(0, comma)), ParseColor(text.substr(comma + 1))};
}

Side ParseSide(std::string_view text) {
    return Parse<Side>(c_sides, text);
}
Projection ParseProjection(std::string_view text) {
    return Parse<Projection>(c_projections, text);
}
MeshAttribute::RenderMode ParseMeshMode(std::string_view text) {
    return Parse<MeshAttribute::RenderMode>(c_meshModes, text);
}

VolumeAttribute::RenderMode ParseVolumeMode(std::string_view text) {
    return Parse<VolumeAttribute::RenderMode>(c_volumeModes, text);
}

Vector4d ParsePlane(std::string_view text) {
    constexpr double largest = 1e6;
    if (std::count(text.begin(), text.end(), ',') != 3) {
        throw std::invalid_argument(fmt::format("'{}' is no plane of the form A,B,C,D", text));
    }
    Vector4d plane(0.0, 0.0, 0.0, 0.0);
    for (double* component : {&plane.x, &plane.y, &plane.z, &plane.w}) {
        *component = ParseNumber(TakeField(text), -largest, largest);
    }
    if (plane.x == 0.0 && plane.y == 0.0 && plane.z == 0.0) {
        throw std::invalid_argument("a plane needs a direction: A, B and C are all 0");
    }
    return plane;
}

Position ParseDirection(std::string_view text) {
    constexpr double largest = 1e6;
    if (std::count(text.begin(), text.end(), ',') != 2) {
        throw std::invalid_argument(fmt::format("'{}' is no direction of the form X,Y,Z", text));
    }
    Position direction{};
    for (double& component : direction) {
        component = ParseNumber(TakeField(text), -largest, largest);
    }
    const double length = std::hypot(direction[0], direction[1], direction[2]);
    if (length < 1e-6) {
        throw std::invalid_argument("an axis needs a direction: X, Y and Z are all 0");
    }
    for (double& component : direction) {
        component /= length;
    }
    return direction;
}

unsigned long ParseCodec(std::string_view text) {
    constexpr std::size_t characters = 4;
    unsigned long code = 0;
    for (std::size_t i = 0; i < characters; ++i) {
        const char c = i < text.size() ? text[i] : ' ';
        if (text.empty() || text.size() > characters || c < ' ' || c > '~') {
            throw std::invalid_argument(fmt::format("'{}' is no code of a codec, such as MJPG", text));
        }
        code |= static_cast<unsigned long>(c) << (8 * i);
    }
    return code;
}

IntensityWindow ParseWindow(std::string_view text) {
    const auto level = [](std::string_view field) {
        int value = -1;
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
        return error == std::errc() && end == field.data() + field.size() ? value : -1;
    };
    std::string_view rest = text;
    const int low = level(TakeField(rest));
    const int high = level(rest);
    if (low < 0 || high < low || high > 255) {
        throw std::invalid_argument(fmt::format("'{}' is no window of the form LO,HI within 0 to 255", text));
    }
    return {low, high};
}

StereoMode ParseStereo(std::string_view text) {
    if (text.size() != 1 || text[0] < '0' || text[0] > '5') {
        throw std::invalid_argument(fmt::format("'{}' is no stereo mode from 0 to 5", text));
    }
    return static_cast<StereoMode>(text[0] - '0');
}

std::string SideNames() {
    return Names<Side>(c_sides, "|");
}
std::string ProjectionNames() {
    return Names<Projection>(c_projections, "|");
}
std::string VolumeModeNames() {
    return Names<VolumeAttribute::RenderMode>(c_volumeModes, "|");
}
std::string MeshModeNames() {
    return Names<MeshAttribute::RenderMode>(c_meshModes, "|");
}

PictureFormat FormatOf(std::string_view path) {
    const std::string lower = Lower(path);
    if (lower.ends_with(".bmp")) {
        return PictureFormat::Bmp;
    }
    if (lower.ends_with(".png")) {
        return PictureFormat::Png;
    }
    throw std::invalid_argument(fmt::format("'{}' ends neither in .bmp nor in .png", path));
}

void CheckPicture(const RenderOptions& options) {
    if (FormatOf(options.output) == PictureFormat::Bmp && options.size.width % 4 != 0) {
        throw std::invalid_argument(fmt::format(
            "--size: the width of a BMP picture is a multiple of 4, not {}; a PNG takes any", options.size.width));
    }
    if (options.grid && options.side == Side::Iso) {
        throw std::invalid_argument("--grid: there is a grid in views along an axis only; choose one with --view");
    }
    CheckStereo(options);
}

void CheckVideo(const RenderOptions& options) {
    if (!Lower(options.output).ends_with(".avi")) {
        throw std::invalid_argument(fmt::format("'{}' does not end in .avi", options.output));
    }
    if (options.size.width % 4 != 0 || options.size.height % 4 != 0) {
        throw std::invalid_argument(fmt::format("--size: both sides of a video are multiples of 4, not {} x {}",
                                                options.size.width, options.size.height));
    }
    CheckStereo(options);
}

} // namespace KOVA::Quorvex::cli
