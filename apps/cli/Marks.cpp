#include "Marks.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include <fmt/format.h>

namespace KOVA::Quorvex::cli {

namespace {

// Takes the text up to the next comma off the front, and the comma with it.
std::string_view TakeField(std::string_view& rest) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view field = rest.substr(0, comma);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
    return field;
}

// As far as single precision goes, like the coordinates of the files.
double TakeCoordinate(std::string_view& rest, std::string_view whole, std::string_view form) {
    const std::string_view field = TakeField(rest);
    double value = 0.0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size() ||
        !(std::abs(value) <= double{std::numeric_limits<float>::max()})) {
        throw std::invalid_argument(fmt::format("'{}' is not of the form {}", whole, form));
    }
    return value;
}

Position TakePosition(std::string_view& rest, std::string_view whole, std::string_view form) {
    Position position{};
    for (double& coordinate : position) {
        coordinate = TakeCoordinate(rest, whole, form);
    }
    return position;
}

std::string WithLineBreaks(std::string_view text) {
    std::string label(text);
    for (std::size_t i = label.find("\\n"); i != std::string::npos; i = label.find("\\n", i)) {
        label.replace(i, 2, "\n");
    }
    return label;
}

} // namespace

PointMark ParsePointMark(std::string_view text) {
    std::string_view rest = text;
    const Position position = TakePosition(rest, text, "X,Y,Z[,LABEL]");
    return {position, WithLineBreaks(rest)};
}

LineMark ParseLineMark(std::string_view text) {
    constexpr std::string_view form = "X1,Y1,Z1,X2,Y2,Z2[,LABEL]";
    std::string_view rest = text;
    const Position first = TakePosition(rest, text, form);
    const Position second = TakePosition(rest, text, form);
    return {{first, second}, WithLineBreaks(rest)};
}

} // namespace KOVA::Quorvex::cli
