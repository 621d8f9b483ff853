#pragma once

#include <string>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/overlay/Point.h>
#include <Quorvex/overlay/Text.h>

namespace KOVA::Quorvex {

class RenderFrame;

// A line between two points, with a label at its middle. The points are not the line's own; they are normally elements
// of the data that holds the line (see OverlayData::AddLine), and moving or colouring them changes the line.
class QUORVEX_API Line {
public:
    Line() = default; // without points: draws nothing
    Line(Point& point0, Point& point1, const ColorRGBA& color, std::string text);

    // Same points and colour; the label's text is taken over, its size and texture are not: see Text.
    Line(const Line& other) = default;
    Line(Line&& other) = default; // NOLINT(performance-noexcept-move-constructor): the label is copied
    Line& operator=(const Line& other) = default;
    Line& operator=(Line&& other) = default; // NOLINT(performance-noexcept-move-constructor)
    ~Line() = default;

    // Alpha is the weight of the line's colour against those of its points: 1 draws it in its own colour, 0 in a
    // gradient between the points'.
    void SetColor(const ColorRGBA& color) { m_color = color; }
    const ColorRGBA& GetColor() const { return m_color; }
    void SetPoint0Ptr(Point* point) { m_point0 = point; }
    Point* GetPoint0Ptr() const { return m_point0; }
    void SetPoint1Ptr(Point* point) { m_point1 = point; }
    Point* GetPoint1Ptr() const { return m_point1; }
    Text& TextRef() { return m_label; }
    const Text& TextRef() const { return m_label; }

    // Draws the line, one pixel wide, and the label in the mean of the colours of its ends. On the thread of
    // Quorvex::Init, inside a pass of the frame.
    void Render(RenderFrame& frame);

private:
    Point* m_point0 = nullptr;
    Point* m_point1 = nullptr;
    Text m_label;
    ColorRGBA m_color{0.0F, 0.0F, 0.0F, 1.0F};
};

} // namespace KOVA::Quorvex
