#include <Quorvex/frame/ScreenOverlay.h>

#include <algorithm>
#include <cmath>
#include <map>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/Resample.h>
#include <Quorvex/platform/Text.h>

namespace KOVA::Quorvex {

namespace {

constexpr float CELL_HEIGHT = 17.0F; // pixels of the shown picture for a line of text
constexpr std::size_t MOST_LABELS = 512;

constexpr GLenum s_matrixModes[] = {GL_PROJECTION, GL_MODELVIEW};

// Asking the font renderer takes longer than drawing, and grids show the same numbers again and again.
const platform::LabelPicture& RasterizeOnce(const std::string& text) {
    static std::map<std::string, platform::LabelPicture> s_labels;
    if (s_labels.size() >= MOST_LABELS) {
        s_labels.clear();
    }
    const auto [found, isNew] = s_labels.try_emplace(text);
    if (isNew) {
        found->second = platform::RasterizeLabel(text);
    }
    return found->second;
}

int Scaled(int pixels, float factor) {
    return std::max(1, static_cast<int>(std::lround(static_cast<float>(pixels) * factor)));
}

// The pixels of the target that make up the one of the shown picture in which a position from -1 to 1 lies.
struct PixelRange {
    int first, end;

    PixelRange(double position, int extent, float scale) {
        const double shown = extent / static_cast<double>(scale);
        // On the border between two pixels it is always the same one, however the position was rounded.
        const double pixel = std::clamp(std::floor((position + 1.0) / 2.0 * shown + 1e-3), 0.0, std::ceil(shown) - 1.0);
        first = static_cast<int>(std::lround(pixel * static_cast<double>(scale)));
        end = std::max(first + 1, static_cast<int>(std::lround((pixel + 1.0) * static_cast<double>(scale))));
    }
};

} // namespace

ScreenOverlay::ScreenOverlay(float scaleX, float scaleY) : m_scaleX(scaleX), m_scaleY(scaleY) {
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    m_width = viewport[2];
    m_height = viewport[3];
    glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT | GL_LINE_BIT |
                 GL_TRANSFORM_BIT);
    for (const GLenum mode : s_matrixModes) {
        glMatrixMode(mode);
        glPushMatrix();
        glLoadIdentity();
    }
    glMatrixMode(GL_PROJECTION);
    glOrtho(0.0, m_width, 0.0, m_height, -1.0, 1.0);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST); // which switches depth writes off as well
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

ScreenOverlay::~ScreenOverlay() {
    for (const GLenum mode : s_matrixModes) {
        glMatrixMode(mode);
        glPopMatrix();
    }
    glPopAttrib();
}

void ScreenOverlay::DrawRow(double position, const ColorRGBA& color) const {
    const PixelRange rows(position, m_height, m_scaleY);
    glColor4fv(color);
    glRecti(0, rows.first, m_width, rows.end);
}

void ScreenOverlay::DrawColumn(double position, const ColorRGBA& color) const {
    const PixelRange columns(position, m_width, m_scaleX);
    glColor4fv(color);
    glRecti(columns.first, 0, columns.end, m_height);
}

ScreenOverlay::Letters ScreenOverlay::Rasterize(const std::string& text) const {
    const platform::LabelPicture& picture = RasterizeOnce(text);
    Letters letters;
    if (picture.pixels.empty()) {
        return letters;
    }
    const float factor = CELL_HEIGHT / platform::LABEL_CELL_ROWS;
    letters.width = Scaled(picture.width, factor * m_scaleX);
    letters.height = Scaled(picture.height, factor * m_scaleY);
    letters.baseline = Scaled(platform::LABEL_CELL_ROWS - platform::LABEL_BASELINE, factor * m_scaleY);
    const auto extent = [](int pixels) { return static_cast<unsigned int>(pixels); };
    const std::vector<unsigned char> rows =
        Resample(picture.pixels.data(), extent(picture.width), extent(picture.height), 1, extent(letters.width),
                 extent(letters.height));
    for (auto row = rows.end(); row != rows.begin(); row -= letters.width) {
        letters.opacities.insert(letters.opacities.end(), row - letters.width, row);
    }
    return letters;
}

void ScreenOverlay::Draw(const Letters& letters, int x, int y, const ColorRGB& color) {
    if (letters.opacities.empty()) {
        return;
    }
    const auto channel = [](float value) {
        return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255.0F));
    };
    std::vector<unsigned char> rgba;
    rgba.reserve(letters.opacities.size() * 4);
    for (const unsigned char opacity : letters.opacities) {
        rgba.insert(rgba.end(), {channel(color.r), channel(color.g), channel(color.b), opacity});
    }
    // A position outside of the target draws nothing at all, but moving there with an empty bitmap is allowed.
    glRasterPos2i(0, 0);
    glBitmap(0, 0, 0.0F, 0.0F, static_cast<float>(x) + 0.25F, static_cast<float>(y) + 0.25F, nullptr);
    glDrawPixels(letters.width, letters.height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
}

} // namespace KOVA::Quorvex
