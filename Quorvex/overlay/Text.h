#pragma once

#include <string>

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

class RenderFrame;

// A label: a text drawn in the scene as a rectangle that always faces the camera. The text is UTF-8, on Windows in the
// process's code page; lines end with \n. It is rasterised once, in bold sans-serif letters 40 pixels high, into a
// texture, and shown at half that size times AdjustSize in pixels of the frame's screen: in orthogonal views
// everywhere, in perspective views halfway between the near and the far plane (nearer labels are larger).
//
// Drawing, and what makes or frees the texture, happens on the thread of Quorvex::Init with the library's context
// current; a label that was never drawn needs no context.
class QUORVEX_API Text {
public:
    explicit Text(std::string text = std::string());

    // The copy has the text only: it starts unscaled and without a texture. Assigning forgets the texture that the
    // target had; a host that wants it freed releases it before.
    Text(const Text& other);
    Text& operator=(const Text& other); // NOLINT(cert-oop54-cpp): assigned to itself it starts anew as well
    ~Text();

    // Rasterises the text. Without any sign of it there is no texture then when the system has no font for it.
    void InitTexture();
    void ReleaseTexture();

    // InitTexture when there is no texture yet and the text is not empty; true when there is one now.
    bool HasTexture();

    // Enlarges the label by a factor. Factors multiply.
    void AdjustSize(float factor) { m_scale *= factor; }

    // Width and height in texture pixels, times the factor: 1 times the factor until the text is rasterised.
    float GetSizeX() const { return m_scale * m_pixelsX; }
    float GetSizeY() const { return m_scale * m_pixelsY; }

    // Half the label's width and height in world coordinates, for the frame's view and screen size.
    float GetRenderingSizeX(const RenderFrame& frame) const;
    float GetRenderingSizeY(const RenderFrame& frame) const;

    // Draws the label in the current colour with its centre at a point of the world.
    void Render(RenderFrame& frame, const Vector3f& position);

    const std::string& GetText() const { return m_text; }
    unsigned int GetTexture() const { return m_texture; } // its GL name; 0 for none

private:
    float m_scale = 1.0F;
    float m_pixelsX = 1.0F; // of the texture; 1 while there is none
    float m_pixelsY = 1.0F;
    unsigned int m_texture = 0;
    std::string m_text;
};

} // namespace KOVA::Quorvex
