#pragma once

#include <string>
#include <vector>

namespace KOVA::Quorvex {

// Where a grid has its lines and what stands at them. No GL here.

// Along one direction of the picture the coordinate c is seen at offset + slope * c, where the picture reaches from -1
// to 1.
struct GridScale {
    double offset;
    double slope;
};

struct GridLine {
    double position; // -1..1
    bool isMajor;
    bool isZero;
    std::string label; // of major lines: the coordinate, with as many digits as the spacing has
};

// 1, 2 or 5 times a power of ten.
struct GridSpacing {
    int digit;
    int exponent;

    double Value() const;
    // Lines between two major ones split their distance into steps of 1, 2 or 5, too.
    int MinorSteps() const { return digit == 2 ? 4 : 5; }
};

// The smallest spacing that is not below a distance, which is positive and finite.
GridSpacing SpacingFrom(double distance);

// The coordinate count * spacing as text: with a decimal point in every locale, and a power of ten where it would be
// long without.
std::string GridLabel(long long count, const GridSpacing& spacing);

// The lines in the picture in the order of their coordinates, the minor ones included. None for a scale that is not
// finite or has no extent.
std::vector<GridLine> LayGrid(const GridScale& scale, const GridSpacing& spacing);

// What the rows of a modelview (16 doubles, OpenGL's order) look along: the world's axis (0, 1, 2) that is exactly the
// picture's right, up and depth direction, in either sense. False when the camera is turned in any other way.
bool FindAlignedAxes(const double* modelview, int axes[3]);

} // namespace KOVA::Quorvex
