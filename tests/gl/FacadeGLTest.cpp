// Initialisation and capabilities on a real driver.

#include <cstring>
#include <string>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class FacadeGLTest : public GlTest {};

TEST_F(FacadeGLTest, InitFailsWithoutAWindow) {
    const HDC deviceContext = Library::s_hDeviceContext;
    const HWND window = Library::s_hWnd;
    EXPECT_FALSE(Library::Init(static_cast<HWND>(nullptr)));
    EXPECT_FALSE(Library::Init(static_cast<HDC>(nullptr)));
    Library::s_hDeviceContext = deviceContext;
    Library::s_hWnd = window;
}

TEST_F(FacadeGLTest, CapabilitiesFollowTheExtensionString) {
    EXPECT_TRUE(Library::CheckQXExtension(0));
    EXPECT_TRUE(Library::CheckQXExtension(CAPABILITY_BASE));
    EXPECT_EQ(Has(CAPABILITY_VOLUME), Has(CAPABILITY_SHADER) && Library::CheckGLExtension("GL_EXT_texture3D"));
    EXPECT_EQ(Has(CAPABILITY_SHADER),
              Library::CheckGLExtension("GL_ARB_shader_objects GL_ARB_vertex_shader GL_ARB_fragment_shader "
                                        "GL_ARB_shading_language_100"));
    EXPECT_TRUE(!Has(CAPABILITY_FRAME_BUFFER) || Library::CheckGLExtension(Library::GetGLExtensionString(1)));
    for (const unsigned int bit : {0U, 2U, 3U, 8U, 16U}) {
        EXPECT_EQ(Library::GetGLExtensionString(bit), nullptr) << bit;
    }
    ASSERT_NE(Library::GetGLExtensionString(4), nullptr);

    // Every token of the driver is found, no beginning of one is.
    const std::string all = Library::GetGLExtensionString();
    const std::string first = all.substr(0, all.find(' '));
    EXPECT_TRUE(Library::CheckGLExtension(first.c_str()));
    EXPECT_FALSE(Library::CheckGLExtension(first.substr(0, first.size() - 1).c_str()));
    EXPECT_TRUE(isExtensionSupported(first.c_str()));
    EXPECT_FALSE(isExtensionSupported((first + " ").c_str()));
    EXPECT_TRUE(isVersionNewerThan(1, 9));
    EXPECT_FALSE(isVersionNewerThan(99));
}

TEST_F(FacadeGLTest, EntryPointsAreOnlyThoseOfTheDriver) {
    EXPECT_NE(platform::GetGlProcedure("glBindTexture"), nullptr);
    EXPECT_EQ(platform::GetGlProcedure("glNoSuchEntryPoint"), nullptr);
    initOpenGL1_3Extensions();
    init3DTextureExtension();
    EXPECT_NE(EntryPoints::glActiveTexture, nullptr);
    if (Library::CheckGLExtension("GL_EXT_texture3D")) { // one that is hidden may be exported all the same
        EXPECT_NE(EntryPoints::glTexImage3DEXT, nullptr);
    }
    EXPECT_NE(EntryPoints::Find("glMultiTexCoord4sv"), nullptr);
    EXPECT_EQ(EntryPoints::Find("glBindTexture"), nullptr) << "not one of the groups";
    EXPECT_EQ(Has(CAPABILITY_SHADER), EntryPoints::glUseProgramObjectARB != nullptr);
}

TEST_F(FacadeGLTest, BothContextsShareObjects) {
    ASSERT_TRUE(platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContextMultiThread()));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASSERT_TRUE(platform::MakeCurrent(Library::GetDeviceContext(), Library::GetRenderContext()));
    EXPECT_TRUE(glIsTexture(texture));
    glDeleteTextures(1, &texture);
}

TEST_F(FacadeGLTest, ErrorCheckTakesOneErrorOffTheQueue) {
    glEnable(0xFFFF);
    CHECK_GL_ERROR();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

} // namespace
} // namespace KOVA::Quorvex::test
