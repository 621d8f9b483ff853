#pragma once

#include <string>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/overlay/Text.h>

namespace KOVA::Quorvex {

class RenderFrame;

// A marked position of the scene, in world coordinates, with a label above it.
class QUORVEX_API Point {
public:
    explicit Point(const Vector3f& position); // black, without a label
    Point(const Vector3f& position, const ColorRGB& color, std::string text);
    Point(const Vector3f& position, std::string text, const ColorRGB& color);

    // The label's text is taken over, its size and texture are not: see Text.
    Point(const Point& other) = default;
    Point(Point&& other) = default; // NOLINT(performance-noexcept-move-constructor): the label is copied
    Point& operator=(const Point& other) = default;
    Point& operator=(Point&& other) = default; // NOLINT(performance-noexcept-move-constructor)
    ~Point() = default;

    void SetColor(const ColorRGB& color) { m_color = color; }
    const ColorRGB& GetColor() const { return m_color; }
    void SetPosition(const Vector3f& position) { m_position = position; }
    const Vector3f& GetPosition() const { return m_position; }
    Text& TextRef() { return m_label; }
    const Text& TextRef() const { return m_label; }

    // Draws the point, 3.5 pixels wide, and the label with its lower edge on the point, both in the point's colour. On
    // the thread of Quorvex::Init, inside a pass of the frame. The point size stays changed.
    void Render(RenderFrame& frame);

private:
    Text m_label;
    ColorRGB m_color;
    Vector3f m_position;
};

} // namespace KOVA::Quorvex
