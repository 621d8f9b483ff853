#include <Quorvex/volume/FragmentEstimate.h>

#include <algorithm>
#include <cmath>

namespace KOVA::Quorvex {

FragmentEstimate::FragmentEstimate(const double* projection, double width, double height)
    : m_wPerDepth(projection[11]), m_wAtZero(projection[15]),
      m_pixels(std::abs(projection[0] * projection[5]) * width * height / 4.0), m_viewport(width * height) {}

double FragmentEstimate::Count(double area, double depth) const {
    const double w = m_wPerDepth * depth + m_wAtZero;
    return w > 0.0 ? std::min(area * m_pixels / (w * w), m_viewport) : 0.0; // else behind the eye
}

} // namespace KOVA::Quorvex
