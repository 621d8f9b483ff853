#pragma once

#include <string>
#include <vector>

#include <Quorvex/core/Colors.h>

namespace KOVA::Quorvex {

// Drawing on top of a picture in pixels of its target, origin at the bottom left: colours are blended by their opacity,
// nothing is lit or textured, depths are neither tested nor written. At the end of the scope the state is as before.
// Sizes are meant in pixels of the shown picture, or what the frame takes for them; the scale is the target's pixels
// for each of these.
class ScreenOverlay {
public:
    // The viewport is the target.
    ScreenOverlay(float scaleX, float scaleY);
    ScreenOverlay(const ScreenOverlay&) = delete;
    ScreenOverlay& operator=(const ScreenOverlay&) = delete;
    ~ScreenOverlay();

    // Of the target.
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }
    float GetScaleX() const { return m_scaleX; }
    float GetScaleY() const { return m_scaleY; }

    // A line over the whole width or height, as one pixel of the shown picture wide; position is -1..1.
    void DrawRow(double position, const ColorRGBA& color) const;
    void DrawColumn(double position, const ColorRGBA& color) const;

    // Rows of opacities, bottom row first.
    struct Letters {
        int width = 0;
        int height = 0;
        int baseline = 0; // rows below the base line
        std::vector<unsigned char> opacities;
    };

    // A text in letters that are about as high as those of a user interface; no pixels when there is no font. The text
    // is encoded as platform::RasterizeLabel wants it.
    Letters Rasterize(const std::string& text) const;

    // The lower left corner in pixels of the target.
    static void Draw(const Letters& letters, int x, int y, const ColorRGB& color);

private:
    int m_width;
    int m_height;
    float m_scaleX;
    float m_scaleY;
};

} // namespace KOVA::Quorvex
