// The axes of the coordinate system and the rotation axis, drawn over the scene.

#include <algorithm>
#include <array>
#include <cmath>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/frame/ScreenOverlay.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

namespace {

// Sizes in pixels of the shown picture.
constexpr float AXIS_LENGTH = 38.0F;
constexpr float LARGEST_SHARE = 0.14F; // of the picture's shorter side
constexpr float AXIS_WIDTH = 2.5F;
constexpr float HEAD_LENGTH = 9.0F;
constexpr float HEAD_WIDTH = 8.0F;
constexpr float LABEL_DISTANCE = 8.0F;

constexpr const char* s_names[] = {"x", "y", "z"};
constexpr ColorRGB s_colors[] = {{0.93F, 0.16F, 0.14F}, {0.10F, 0.68F, 0.15F}, {0.20F, 0.42F, 1.0F}};

struct AxisOnScreen {
    int axis;
    float x, y;    // of its end, in lengths
    float towards; // the viewer
};

// From the one that points away most to the one that comes nearest.
std::array<AxisOnScreen, 3> AxesOnScreen(const View& view) {
    const double* m = view.GetModelviewMatrix();
    const float sign = view.IsLeftHand() ? -1.0F : 1.0F;
    std::array<AxisOnScreen, 3> axes{};
    for (int axis = 0; axis < 3; ++axis) {
        const double* column = m + std::size_t{4} * static_cast<std::size_t>(axis);
        const double length = std::sqrt(column[0] * column[0] + column[1] * column[1] + column[2] * column[2]);
        const auto part = [length](double value) { return length > 0.0 ? static_cast<float>(value / length) : 0.0F; };
        axes[static_cast<std::size_t>(axis)] = {axis, part(column[0]), part(column[1]), sign * part(column[2])};
    }
    std::sort(axes.begin(), axes.end(),
              [](const AxisOnScreen& a, const AxisOnScreen& b) { return a.towards < b.towards; });
    return axes;
}

// Draws in pixels of the shown picture around a middle.
class TripodPainter {
public:
    TripodPainter(const ScreenOverlay& overlay, float middleX, float middleY, float length)
        : m_overlay(overlay), m_middleX(middleX), m_middleY(middleY), m_length(length) {}

    void Draw(const AxisOnScreen& axis, const ColorRGB& halo) const {
        const float seen = std::hypot(axis.x, axis.y);
        const ColorRGB color = s_colors[axis.axis];
        if (seen * m_length > 1.0F) {
            const float alongX = axis.x / seen;
            const float alongY = axis.y / seen;
            DrawArrow(alongX, alongY, seen, 1.0F, {halo.r, halo.g, halo.b, 0.35F});
            DrawArrow(alongX, alongY, seen, 0.0F, {color.r, color.g, color.b, 1.0F});
        }
        // An axis that points at the viewer is a dot; its name stands beside it, where no other axis is.
        const bool isDot = seen < 0.15F;
        const float reach = m_length * seen + LABEL_DISTANCE;
        const float x = isDot ? -LABEL_DISTANCE : axis.x / seen * reach;
        const float y = isDot ? -LABEL_DISTANCE : axis.y / seen * reach;
        if (isDot) {
            DrawDisc(AXIS_WIDTH + 1.0F, {halo.r, halo.g, halo.b, 0.35F});
            DrawDisc(AXIS_WIDTH, {color.r, color.g, color.b, 1.0F});
        }
        DrawName(s_names[axis.axis], x, y, color);
    }

private:
    void Corner(float x, float y) const {
        glVertex2f((m_middleX + x) * m_overlay.GetScaleX(), (m_middleY + y) * m_overlay.GetScaleY());
    }

    // A shaft and a head whose length shrinks with that of the axis; border makes all wider.
    void DrawArrow(float alongX, float alongY, float seen, float border, const ColorRGBA& color) const {
        const float head = HEAD_LENGTH * seen;
        const float end = m_length * seen;
        const auto at = [&](float along, float across) {
            Corner(alongX * along - alongY * across, alongY * along + alongX * across);
        };
        const float half = AXIS_WIDTH / 2 + border;
        const float halfHead = HEAD_WIDTH / 2 + border;
        glColor4fv(color);
        glBegin(GL_QUADS);
        at(-half, -half);
        at(end - head, -half);
        at(end - head, half);
        at(-half, half);
        glEnd();
        glBegin(GL_TRIANGLES);
        at(end - head - border, -halfHead);
        at(end + border, 0.0F);
        at(end - head - border, halfHead);
        glEnd();
    }

    void DrawDisc(float radius, const ColorRGBA& color) const {
        constexpr int corners = 16;
        glColor4fv(color);
        glBegin(GL_POLYGON);
        for (int i = 0; i < corners; ++i) {
            const float angle = 6.2831853F * static_cast<float>(i) / corners;
            Corner(radius * std::cos(angle), radius * std::sin(angle));
        }
        glEnd();
    }

    void DrawName(const char* name, float x, float y, const ColorRGB& color) const {
        const ScreenOverlay::Letters letters = m_overlay.Rasterize(name);
        // Small letters reach from the base line about half way up.
        const float middle = static_cast<float>(letters.baseline) + 0.25F * static_cast<float>(letters.height);
        ScreenOverlay::Draw(letters,
                            static_cast<int>(std::lround((m_middleX + x) * m_overlay.GetScaleX())) - letters.width / 2,
                            static_cast<int>(std::lround((m_middleY + y) * m_overlay.GetScaleY() - middle)), color);
    }

    const ScreenOverlay& m_overlay;
    float m_middleX;
    float m_middleY;
    float m_length;
};

} // namespace

void RenderFrame::RenderCoordAxes() {
    if (m_view == nullptr) {
        return;
    }
    const ScreenOverlay overlay(m_targetScaleX, m_targetScaleY);
    const float width = static_cast<float>(overlay.GetWidth()) / overlay.GetScaleX();
    const float height = static_cast<float>(overlay.GetHeight()) / overlay.GetScaleY();
    const float length = std::min(AXIS_LENGTH, LARGEST_SHARE * std::min(width, height));
    const float middle = length + 2.0F * LABEL_DISTANCE;
    const TripodPainter painter(overlay, middle, middle, length);
    const float grey = HasBrightBackground() ? 1.0F : 0.0F; // around the colours, which are darker or brighter
    for (const AxisOnScreen& axis : AxesOnScreen(*m_view)) {
        painter.Draw(axis, {grey, grey, grey});
    }
}

void RenderFrame::SetRotationAxis(const Vector3f& point, const Vector3f& direction) {
    m_rotationAxisPoint = point;
    m_rotationAxisDirection = direction;
}

// A centre line, as in engineering drawings, a little longer than the scene: what lies behind surfaces is fainter.
void RenderFrame::RenderRotationAxis() {
    const float squared = DotProduct(m_rotationAxisDirection, m_rotationAxisDirection);
    if (m_view == nullptr || !(squared > 0.0F)) {
        return;
    }
    const Vector3f low = GetBB0();
    const Vector3f high = GetBB1();
    float first = 0.0F;
    float last = 0.0F;
    for (unsigned int i = 0; i < 8; ++i) {
        const Vector3f corner((i & 1U) != 0 ? high.x : low.x, (i & 2U) != 0 ? high.y : low.y,
                              (i & 4U) != 0 ? high.z : low.z);
        const float along = DotProduct(corner - m_rotationAxisPoint, m_rotationAxisDirection) / squared;
        first = i == 0 ? along : std::min(first, along);
        last = i == 0 ? along : std::max(last, along);
    }
    const float more = last > first ? 0.15F * (last - first) : 1.0F / std::sqrt(squared);
    const Vector3f ends[] = {m_rotationAxisPoint + m_rotationAxisDirection * (first - more),
                             m_rotationAxisPoint + m_rotationAxisDirection * (last + more)};

    const ScreenOverlay overlay(m_targetScaleX, m_targetScaleY);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(m_loadedProjection);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(m_loadedModelview);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glLineWidth(std::max(1.0F, 1.5F * m_targetScaleX));
    glEnable(GL_LINE_STIPPLE);
    glLineStipple(std::max(1, static_cast<GLint>(std::lround(m_targetScaleX))), 0xFF18); // long, short, long ...
    const bool bright = HasBrightBackground();
    for (const auto& [depths, opacity] : {std::pair(GL_LEQUAL, 1.0F), std::pair(GL_GREATER, 0.3F)}) {
        glDepthFunc(static_cast<GLenum>(depths));
        glColor4f(bright ? 0.75F : 1.0F, bright ? 0.0F : 0.45F, bright ? 0.6F : 0.9F, opacity);
        glBegin(GL_LINES);
        for (const Vector3f& end : ends) {
            glVertex3f(end.x, end.y, end.z);
        }
        glEnd();
    }
}

} // namespace KOVA::Quorvex
