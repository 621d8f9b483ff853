// The measurement grid of views along an axis, and text in the picture.

#include <cmath>

#include <Quorvex/frame/GridLayout.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/frame/ScreenOverlay.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

namespace {

constexpr double MAJOR_PIXELS = 80.0; // of the shown picture, at least, between two lines with numbers
constexpr int MARGIN = 4;             // pixels between text and the picture's edge
constexpr int TEXT_GAP = 12;          // pixels between two numbers, at least

// Black or white with these opacities, so that the lines are seen on gradients, too.
constexpr float MINOR_OPACITY = 0.09F;
constexpr float MAJOR_OPACITY = 0.25F;
constexpr float ZERO_OPACITY = 0.6F;

constexpr const char* s_axisNames[] = {"x", "y", "z"};

float OpacityOf(const GridLine& line) {
    if (line.isZero) {
        return ZERO_OPACITY;
    }
    return line.isMajor ? MAJOR_OPACITY : MINOR_OPACITY;
}

// Writes the coordinates along the lower and the left edge, and the axes' names at the far ends of these.
class GridLabels {
public:
    GridLabels(const ScreenOverlay& overlay, const ColorRGB& color)
        : m_overlay(overlay), m_color(color), m_marginX(static_cast<int>(MARGIN * overlay.GetScaleX())),
          m_marginY(static_cast<int>(MARGIN * overlay.GetScaleY())) {}

    void WriteName(const char* acrossName, const char* upName) {
        const ScreenOverlay::Letters across = m_overlay.Rasterize(acrossName);
        m_acrossEnd = m_overlay.GetWidth() - m_marginX - across.width;
        ScreenOverlay::Draw(across, m_acrossEnd, m_marginY, m_color);
        const ScreenOverlay::Letters up = m_overlay.Rasterize(upName);
        m_upEnd = m_overlay.GetHeight() - m_marginY - up.height;
        ScreenOverlay::Draw(up, m_marginX, m_upEnd, m_color);
        m_upStart = m_marginY + up.height; // above the lower row
    }

    void WriteAcross(const std::vector<GridLine>& lines) {
        const int gap = static_cast<int>(TEXT_GAP * m_overlay.GetScaleX());
        int left = m_marginX;
        int right = m_acrossEnd - gap;
        for (const GridLine& line : lines) {
            const ScreenOverlay::Letters letters = m_overlay.Rasterize(line.label);
            const int x = Place(line.position, m_overlay.GetWidth()) - letters.width / 2;
            const bool isFree = x >= left && x + letters.width <= right;
            if (line.isMajor && isFree) {
                ScreenOverlay::Draw(letters, x, m_marginY, m_color);
                // Coordinates may run to either side.
                const bool rightwards = lines.front().position <= lines.back().position;
                (rightwards ? left : right) = rightwards ? x + letters.width + gap : x - gap;
            }
        }
    }

    void WriteUp(const std::vector<GridLine>& lines) const {
        for (const GridLine& line : lines) {
            const ScreenOverlay::Letters letters = m_overlay.Rasterize(line.label);
            const int y = Place(line.position, m_overlay.GetHeight()) - letters.height / 2;
            if (line.isMajor && y >= m_upStart && y + letters.height <= m_upEnd) {
                ScreenOverlay::Draw(letters, m_marginX, y, m_color);
            }
        }
    }

private:
    static int Place(double position, int extent) {
        return static_cast<int>(std::lround((position + 1.0) / 2.0 * extent));
    }

    const ScreenOverlay& m_overlay;
    ColorRGB m_color;
    int m_marginX;
    int m_marginY;
    int m_acrossEnd = 0; // where the names stand
    int m_upEnd = 0;
    int m_upStart = 0;
};

} // namespace

// Where the world's coordinate along an axis is seen, in the plane through a point, in the loaded camera.
static GridScale ScaleAlong(const double* projection, const double* modelview, int row, int axis,
                            const Vector3f& point) {
    double eye[4] = {modelview[12], modelview[13], modelview[14], 1.0};
    const float coordinates[] = {point.x, point.y, point.z};
    for (int i = 0; i < 3; ++i) {
        if (i != axis) { // the coordinate itself comes in by the slope
            for (int k = 0; k < 3; ++k) {
                eye[k] += modelview[i * 4 + k] * static_cast<double>(coordinates[i]);
            }
        }
    }
    double offset = 0.0;
    double w = 0.0;
    for (int i = 0; i < 4; ++i) {
        offset += projection[i * 4 + row] * eye[i];
        w += projection[i * 4 + 3] * eye[i];
    }
    if (!(w > 0.0)) { // behind the camera
        return {0.0, 0.0};
    }
    return {offset / w, projection[row * 4 + row] * modelview[axis * 4 + row] / w};
}

void RenderFrame::DrawBackgroundUserView() {
    int axes[3];
    if (!m_showGrid || m_view == nullptr || !FindAlignedAxes(m_view->GetModelviewMatrix(), axes)) {
        return;
    }
    // In the plane through the middle of the scene: in perspective views nearer parts look larger than the grid says.
    const Vector3f center = GetCenter();
    GridScale scales[2];
    for (int row = 0; row < 2; ++row) {
        const GridScale world = ScaleAlong(m_loadedProjection, m_loadedModelview, row, axes[row], center);
        const double slope = world.slope / m_gridUnit;
        scales[row] = {world.offset - slope * m_gridOrigin[axes[row]], slope};
        if (!std::isfinite(scales[row].offset) || !std::isnormal(slope)) {
            return;
        }
    }
    const ScreenOverlay overlay(m_targetScaleX, m_targetScaleY);
    const double width = overlay.GetWidth() / static_cast<double>(m_targetScaleX);
    const GridSpacing spacing = SpacingFrom(MAJOR_PIXELS * 2.0 / width / std::abs(scales[0].slope));
    const std::vector<GridLine> across = LayGrid(scales[0], spacing);
    const std::vector<GridLine> up = LayGrid(scales[1], spacing);

    const float grey = HasBrightBackground() ? 0.0F : 1.0F;
    for (const GridLine& line : across) {
        overlay.DrawColumn(line.position, {grey, grey, grey, OpacityOf(line)});
    }
    for (const GridLine& line : up) {
        overlay.DrawRow(line.position, {grey, grey, grey, OpacityOf(line)});
    }
    GridLabels labels(overlay, {grey, grey, grey});
    labels.WriteName(s_axisNames[axes[0]], s_axisNames[axes[1]]);
    labels.WriteAcross(across);
    labels.WriteUp(up);
}

void RenderFrame::SetGridUnit(double unit, double originX, double originY, double originZ) {
    m_gridUnit = unit;
    m_gridOrigin[0] = originX;
    m_gridOrigin[1] = originY;
    m_gridOrigin[2] = originZ;
}

bool RenderFrame::HasBrightBackground() const {
    const ColorRGBA mean = GetBackgroundColor();
    return mean.r + mean.g + mean.b > 1.5F;
}

// The name is part of the interface.
// NOLINTNEXTLINE(readability-identifier-naming)
void RenderFrame::glTextOut(const char* text, float x, float y, ColorRGB color) const {
    if (text == nullptr) {
        return;
    }
    const ScreenOverlay overlay(m_targetScaleX, m_targetScaleY);
    const ScreenOverlay::Letters letters = overlay.Rasterize(text);
    const auto place = [](float position, int extent) {
        return static_cast<int>(std::lround((position + 1.0F) / 2.0F * static_cast<float>(extent)));
    };
    ScreenOverlay::Draw(letters, place(x, overlay.GetWidth()), place(y, overlay.GetHeight()) - letters.baseline, color);
}

} // namespace KOVA::Quorvex
