#include <Quorvex/frame/PictureQuad.h>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/FrameBuffer.h>

namespace KOVA::Quorvex {

void LoadNormalizedDeviceMatrices() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glTranslatef(0.0F, 0.0F, -1.0F);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0.0F, 0.0F, 1.0F);
}

void DrawPicture(const FrameBuffer& picture, float x, float y, bool pixelForPixel) {
    LoadNormalizedDeviceMatrices();
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    picture.Begin();

    // Without filters, and without depths, software drivers copy at twice the speed.
    const GLint filter = pixelForPixel ? GL_NEAREST : GL_LINEAR;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);

    glColor3f(1.0F, 1.0F, 1.0F);
    glBegin(GL_QUADS);
    glTexCoord2f(0.0F, 1.0F);
    glVertex2f(-x, y);
    glTexCoord2f(1.0F, 1.0F);
    glVertex2f(x, y);
    glTexCoord2f(1.0F, 0.0F);
    glVertex2f(x, -y);
    glTexCoord2f(0.0F, 0.0F);
    glVertex2f(-x, -y);
    glEnd();

    glBindTexture(GL_TEXTURE_2D, 0);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_DEPTH_TEST);
}

} // namespace KOVA::Quorvex
