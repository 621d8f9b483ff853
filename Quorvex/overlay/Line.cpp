#include <Quorvex/overlay/Line.h>

#include <utility>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/overlay/MarkSize.h>

namespace KOVA::Quorvex {

Line::Line(Point& point0, Point& point1, const ColorRGBA& color, std::string text)
    : m_point0(&point0), m_point1(&point1), m_label(std::move(text)), m_color(color) {}

void Line::Render(RenderFrame& frame) {
    if (m_point0 == nullptr || m_point1 == nullptr) {
        return;
    }
    const float weight = m_color.a;
    const ColorRGB own = ColorRGB(m_color.r, m_color.g, m_color.b) * weight;
    const ColorRGB color0 = m_point0->GetColor() * (1.0F - weight) + own;
    const ColorRGB color1 = m_point1->GetColor() * (1.0F - weight) + own;
    const Vector3f& end0 = m_point0->GetPosition();
    const Vector3f& end1 = m_point1->GetPosition();
    glLineWidth(MarkSize(frame, 1.0F));
    glBegin(GL_LINES);
    glColor3f(color0.r, color0.g, color0.b);
    glVertex3f(end0.x, end0.y, end0.z);
    glColor3f(color1.r, color1.g, color1.b);
    glVertex3f(end1.x, end1.y, end1.z);
    glEnd();
    glLineWidth(1.0F);

    const ColorRGB mean = (color0 + color1) * 0.5F;
    glColor3f(mean.r, mean.g, mean.b);
    m_label.Render(frame, (end0 + end1) * 0.5F);
}

} // namespace KOVA::Quorvex
