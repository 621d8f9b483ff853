#pragma once

#include <list>
#include <string>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/overlay/Line.h>
#include <Quorvex/overlay/Point.h>

namespace KOVA::Quorvex {

class RenderFrame;

// Points and lines, and the counter of who uses them. Elements keep their addresses until Clear. Not copied: its lines
// refer to its points.
class QUORVEX_API OverlayData {
public:
    OverlayData() = default;
    OverlayData(const OverlayData&) = delete;
    OverlayData& operator=(const OverlayData&) = delete;
    ~OverlayData() = default;

    // Both append and return the stored element, through which it is changed. A line keeps to points of this data: one
    // that is not stored here is copied, and the line uses the copy.
    Point& AddPoint(const Vector3f& position, const ColorRGB& color, std::string text);
    Line& AddLine(Point& point0, Point& point1, const ColorRGBA& color, std::string text);

    // Removes all points and lines. Frees the textures of their labels: see Text.
    void Clear();

    // In insertion order.
    const std::list<Point>& GetPoints() const { return m_points; }
    const std::list<Line>& GetLines() const { return m_lines; }

    // Draws the points, then the lines, with their labels, in world coordinates and hidden by what lies in front. On
    // the thread of Quorvex::Init, inside a pass of the frame.
    void Render(RenderFrame& frame);

    // One for the maker and one for each overlay that was constructed on existing data. Both changes return the new
    // value. The overlay that brings it to 0 deletes the data: a host that makes its data with new can hand its own
    // share over to them with DecInstanceCounter.
    int IncInstanceCounter() { return ++m_instanceCounter; }
    int DecInstanceCounter() { return --m_instanceCounter; }
    int GetInstanceCounter() const { return m_instanceCounter; }

private:
    Point& Stored(Point& point);

    std::list<Line> m_lines;
    std::list<Point> m_points;
    int m_instanceCounter = 1;
};

} // namespace KOVA::Quorvex
