#include "ImportOptions.h"

#include <charconv>
#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

namespace KOVA::Quorvex::cli {

namespace {

// All of the text as a number; false when it is none.
template <class T> bool Read(std::string_view text, T& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// Takes what stands before the separator, or all of it, off the text.
std::string_view Take(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

} // namespace

std::array<std::int16_t, 3> ParseDims(std::string_view text) {
    std::array<std::int16_t, 3> dims{};
    std::string_view rest = text;
    for (std::int16_t& dimension : dims) {
        const bool last = &dimension == &dims.back();
        if (!Read(last ? rest : Take(rest, 'x'), dimension) || dimension < 1) {
            throw std::invalid_argument(
                fmt::format("'{}' is no size of the form 512x512x300 with 1 to 32767 voxels each way", text));
        }
    }
    return dims;
}

RekSamples ParseSampleType(std::string_view text) {
    if (text == "u8") {
        return REK_UINT8;
    }
    if (text == "u16") {
        return REK_UINT16;
    }
    if (text == "f32") {
        return REK_FLOAT;
    }
    throw std::invalid_argument(fmt::format("'{}' is none of u8, u16, f32", text));
}

FloatRange ParseRange(std::string_view text) {
    FloatRange range{};
    std::string_view high = text;
    const std::string_view low = Take(high, ',');
    if (!Read(low, range.low) || !Read(high, range.high) || !(range.low < range.high) ||
        !std::isfinite(range.high - range.low)) {
        throw std::invalid_argument(fmt::format("'{}' is no range of the form MIN,MAX", text));
    }
    return range;
}

} // namespace KOVA::Quorvex::cli
