#pragma once

namespace KOVA::Quorvex {

// How many fragments polygons across the line of sight make, to know how much work they are.
class FragmentEstimate {
public:
    // projection in OpenGL's element order; width and height of the viewport in pixels.
    FragmentEstimate(const double* projection, double width, double height);

    // Of a polygon of this area (world units) at this depth in eye space.
    double Count(double area, double depth) const;

private:
    double m_wPerDepth;
    double m_wAtZero;
    double m_pixels; // of a unit square where w is 1
    double m_viewport;
};

} // namespace KOVA::Quorvex
