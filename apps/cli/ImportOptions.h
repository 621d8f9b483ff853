#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <Quorvex/volume/RekHeader.h>

namespace KOVA::Quorvex::cli {

struct FloatRange {
    float low, high;
};

struct ImportOptions {
    std::string raw;
    std::string output;
    std::array<std::int16_t, 3> dims{};
    RekSamples type = REK_UINT8;
    std::optional<FloatRange> range; // samples that become the smallest and the largest; floats are measured without it
};

// They throw std::invalid_argument.
std::array<std::int16_t, 3> ParseDims(std::string_view text); // 1..32767 each
RekSamples ParseSampleType(std::string_view text);
FloatRange ParseRange(std::string_view text);

} // namespace KOVA::Quorvex::cli
