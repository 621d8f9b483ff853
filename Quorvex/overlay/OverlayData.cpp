#include <Quorvex/overlay/OverlayData.h>

#include <algorithm>
#include <utility>

#include <Quorvex/core/OpenGL.h>

namespace KOVA::Quorvex {

Point& OverlayData::AddPoint(const Vector3f& position, const ColorRGB& color, std::string text) {
    return m_points.emplace_back(position, color, std::move(text));
}

Line& OverlayData::AddLine(Point& point0, Point& point1, const ColorRGBA& color, std::string text) {
    Point& stored0 = Stored(point0);
    Point& stored1 = Stored(point1);
    return m_lines.emplace_back(stored0, stored1, color, std::move(text));
}

Point& OverlayData::Stored(Point& point) {
    const bool stored =
        std::any_of(m_points.begin(), m_points.end(), [&point](const Point& p) { return &p == &point; });
    return stored ? point : m_points.emplace_back(point);
}

void OverlayData::Clear() {
    m_points.clear();
    m_lines.clear();
}

void OverlayData::Render(RenderFrame& frame) {
    glPointSize(10.0F);
    for (Point& point : m_points) {
        point.Render(frame);
    }
    glPointSize(1.0F);
    for (Line& line : m_lines) {
        line.Render(frame);
    }
}

} // namespace KOVA::Quorvex
