#include <Quorvex/overlay/Point.h>

#include <utility>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/overlay/MarkSize.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

Point::Point(const Vector3f& position) : m_color(0.0F, 0.0F, 0.0F), m_position(position) {}

Point::Point(const Vector3f& position, const ColorRGB& color, std::string text)
    : m_label(std::move(text)), m_color(color), m_position(position) {}

Point::Point(const Vector3f& position, std::string text, const ColorRGB& color)
    : Point(position, color, std::move(text)) {}

void Point::Render(RenderFrame& frame) {
    glColor3f(m_color.r, m_color.g, m_color.b);
    glPointSize(MarkSize(frame, 3.5F));
    glBegin(GL_POINTS);
    glVertex3f(m_position.x, m_position.y, m_position.z);
    glEnd();
    // Its height is known only when it has been rasterised.
    if (frame.GetView() != nullptr && m_label.HasTexture()) {
        m_label.Render(frame, m_position + frame.GetView()->getYVector() * m_label.GetRenderingSizeY(frame));
    }
}

} // namespace KOVA::Quorvex
