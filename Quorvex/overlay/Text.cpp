#include <Quorvex/overlay/Text.h>

#include <cassert>
#include <cmath>
#include <utility>

#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/overlay/LabelTexture.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

namespace {

// The width of what a perspective view shows halfway between its planes.
double PerspectiveExtent(const View& view) {
    return std::tan(double{view.getFOV()} / 2.0) * (double{view.getNear()} + double{view.getFar()});
}

unsigned int MakeTexture(const LabelTexture& label) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    CHECK_GL_ERROR();
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    GLint level = 0;
    for (LabelImage image = label.image;; image = HalfSize(image)) {
        if (image.width <= largest && image.height <= largest) { // else the texture starts with a smaller one
            glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA, image.width, image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                         image.rgba.data());
            ++level;
        }
        if (image.width == 1 && image.height == 1) {
            break;
        }
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    CHECK_GL_ERROR();
    return texture;
}

} // namespace

Text::Text(std::string text) : m_text(std::move(text)) {}

Text::Text(const Text& other) : m_text(other.m_text) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assigned to itself it starts anew as well
Text& Text::operator=(const Text& other) {
    m_text = other.m_text;
    m_scale = 1.0F;
    m_pixelsX = 1.0F;
    m_pixelsY = 1.0F;
    m_texture = 0;
    return *this;
}

Text::~Text() {
    ReleaseTexture();
}

void Text::InitTexture() {
    assert(IsGlThread());
    ReleaseTexture();
    const platform::LabelPicture picture = platform::RasterizeLabel(m_text);
    if (picture.pixels.empty()) {
        return;
    }
    const LabelTexture label = MakeLabelTexture(picture, isVersionNewerThan(2));
    m_texture = MakeTexture(label);
    m_pixelsX = label.sizeX;
    m_pixelsY = label.sizeY;
}

void Text::ReleaseTexture() {
    if (m_texture == 0) {
        return;
    }
    assert(IsGlThread());
    glDeleteTextures(1, &m_texture);
    m_texture = 0;
    m_pixelsX = 1.0F;
    m_pixelsY = 1.0F;
}

bool Text::HasTexture() {
    if (m_texture == 0 && !m_text.empty()) {
        InitTexture();
    }
    return m_texture != 0;
}

float Text::GetRenderingSizeX(const RenderFrame& frame) const {
    const View& view = *frame.GetView();
    double extent = 0.0;
    if (view.IsProjectionOrthogonal()) {
        extent = std::abs(view.GetProjectionOrthogonalRight() - view.GetProjectionOrthogonalLeft());
    }
    if (view.IsProjectionPerspective()) {
        extent = PerspectiveExtent(view);
    }
    return static_cast<float>(double{GetSizeX()} * 0.25 * extent / frame.GetScreenWidth());
}

float Text::GetRenderingSizeY(const RenderFrame& frame) const {
    const View& view = *frame.GetView();
    double extent = 0.0;
    if (view.IsProjectionOrthogonal()) {
        extent = std::abs(view.GetProjectionOrthogonalTop() - view.GetProjectionOrthogonalBottom());
    }
    if (view.IsProjectionPerspective()) {
        extent = PerspectiveExtent(view) * frame.GetScreenHeight() / frame.GetScreenWidth();
    }
    return static_cast<float>(double{GetSizeY()} * 0.25 * extent / frame.GetScreenHeight());
}

void Text::Render(RenderFrame& frame, const Vector3f& position) {
    if (frame.GetView() == nullptr || !HasTexture()) {
        return;
    }
    const Vector3f right = frame.GetView()->getXVector() * GetRenderingSizeX(frame);
    const Vector3f up = frame.GetView()->getYVector() * GetRenderingSizeY(frame);
    const auto corner = [](float s, float t, const Vector3f& p) {
        glTexCoord2f(s, t);
        glVertex3f(p.x, p.y, p.z);
    };
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.5F);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glBegin(GL_QUADS);
    corner(0.0F, 1.0F, position + up - right);
    corner(1.0F, 1.0F, position + up + right);
    corner(1.0F, 0.0F, position - up + right);
    corner(0.0F, 0.0F, position - up - right);
    glEnd();
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_ALPHA_TEST);
    glBindTexture(GL_TEXTURE_2D, 0);
}

} // namespace KOVA::Quorvex
