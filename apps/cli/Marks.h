#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

// Points and lines that `quorvex render` draws into the scene, in the coordinates of the files.

namespace KOVA::Quorvex::cli {

using Position = std::array<double, 3>;

struct PointMark {
    Position position;
    std::string label; // may be empty
};

struct LineMark {
    Position ends[2];
    std::string label;
};

struct Marks {
    std::vector<PointMark> points;
    std::vector<LineMark> lines;
};

// "X,Y,Z" and "X1,Y1,Z1,X2,Y2,Z2", both optionally followed by a comma and a label, which may have commas of its own;
// the two characters \n in it begin a new line. Throw std::invalid_argument with a text that says what is wrong.
PointMark ParsePointMark(std::string_view text);
LineMark ParseLineMark(std::string_view text);

} // namespace KOVA::Quorvex::cli
