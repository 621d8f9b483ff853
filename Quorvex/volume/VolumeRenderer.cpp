#include <Quorvex/volume/VolumeRenderer.h>

#include <array>
#include <cassert>
#include <cmath>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/BrickOrder.h>
#include <Quorvex/volume/ClipPlanes.h>
#include <Quorvex/volume/VisibleIntensities.h>
#include <Quorvex/volume/Volume.h>
#include <Quorvex/volume/VolumePrograms.h>

namespace KOVA::Quorvex {

bool VolumeRenderer::m_bInit = false;
unsigned int VolumeRenderer::m_handleProgram = 0;
unsigned int VolumeRenderer::m_handleVertexProgram = 0;
int VolumeRenderer::m_loadedProgram = 0;
unsigned int VolumeRenderer::m_transferTexture = 0;
bool VolumeRenderer::s_bSupportsIntensityMinMax = false;
unsigned int VolumeRenderer::s_sliceTextures[6] = {};

namespace {

constexpr int TABLE_SIZE = 256;
constexpr float BRICK_VOXEL = 1.0F / 32.0F; // in texture coordinates of a brick

// However a volume's drawing ends, also by a throw: its state does not outlive it.
class CleanUpScope {
public:
    CleanUpScope() = default;
    CleanUpScope(const CleanUpScope&) = delete;
    CleanUpScope& operator=(const CleanUpScope&) = delete;
    ~CleanUpScope() { VolumeRenderer::CleanUp(); }
};

void SetBlendEquation(GLenum equation) {
    if (EntryPoints::glBlendEquationEXT != nullptr) {
        EntryPoints::glBlendEquationEXT(equation);
    }
}

unsigned int MakeTransferTexture() {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_1D, texture);
    glTexParameterf(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_1D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_1D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    return texture;
}

void DeleteTexture(unsigned int& texture) {
    if (texture != 0) {
        glDeleteTextures(1, &texture);
    }
    texture = 0;
}

GLenum BlendEquationOf(unsigned int mode) {
    switch (mode) {
    case VolumeAttribute::MinimumIntensity:
        return GL_MIN_EXT;
    case VolumeAttribute::MaximumIntensity:
        return GL_MAX_EXT;
    default:
        return GL_FUNC_ADD_EXT;
    }
}

bool IsKnownMode(unsigned int mode) {
    return mode <= VolumeAttribute::MaximumIntensity;
}

// The table with the opacity that samples have when they stand exponent times as dense (or thin) as it was made for.
std::array<ColorRGBA, TABLE_SIZE> CorrectOpacity(const ColorRGBA* table, float exponent) {
    std::array<ColorRGBA, TABLE_SIZE> corrected{};
    for (std::size_t i = 0; i < TABLE_SIZE; ++i) {
        corrected[i] = table[i];
        corrected[i].a = 1.0F - std::pow(1.0F - table[i].a, exponent);
    }
    return corrected;
}

} // namespace

bool VolumeRenderer::Init() {
    if (!VolumeData::InitExtensions() || !isVersionNewerThan(1)) {
        return false;
    }
    initOpenGL1_3Extensions();
    CHECK_GL_ERROR();
    if (!isExtensionSupported("GL_EXT_texture3D") || !Quorvex::CheckQXExtension(CAPABILITY_SHADER)) {
        return false;
    }
    initShader();
    CHECK_GL_ERROR();
    m_loadedProgram = -1;
    m_handleProgram = 0;
    ForgetVolumePrograms();
    m_transferTexture = MakeTransferTexture();
    for (unsigned int& texture : s_sliceTextures) {
        texture = MakeTransferTexture();
    }
    m_bInit = true;
    s_bSupportsIntensityMinMax = isExtensionSupported("GL_EXT_blend_minmax");
    return true;
}

void VolumeRenderer::Release() {
    if (!m_bInit) {
        return;
    }
    UseProgram(0);
    ReleaseVolumePrograms();
    m_handleProgram = 0;
    m_loadedProgram = -1;
    DeleteTexture(m_transferTexture);
    for (unsigned int& texture : s_sliceTextures) {
        DeleteTexture(texture);
    }
}

const char* VolumeRenderer::GetGLExtensionString() {
    return "GL_EXT_texture3D GL_ARB_shader_objects GL_ARB_vertex_shader GL_ARB_fragment_shader "
           "GL_ARB_shading_language_100";
}

void VolumeRenderer::SetTransferFunction(unsigned int texture, const ColorRGBA* table, float exponent) {
    const auto corrected = CorrectOpacity(table, exponent);
    glBindTexture(GL_TEXTURE_1D, texture);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA16F_ARB, TABLE_SIZE, 0, GL_RGBA, GL_FLOAT, corrected.data());
}

void VolumeRenderer::loadProgram(unsigned int mode) {
    m_handleProgram = IsKnownMode(mode) ? GetVolumeProgram(mode == VolumeAttribute::Shaded).handle : 0;
    m_loadedProgram = static_cast<int>(mode);
}

void VolumeRenderer::setMode(unsigned int mode, const Vector3f& lightDirection, float gradientStep, float shininess,
                             const ColorRGBA& ambient) {
    if (static_cast<int>(mode) != m_loadedProgram) {
        loadProgram(mode);
    }
    if (!IsKnownMode(mode)) {
        return;
    }
    SelectTextureUnit(1);
    glBindTexture(GL_TEXTURE_1D, m_transferTexture);
    SelectTextureUnit(0);
    glEnable(GL_BLEND);
    SetBlendEquation(BlendEquationOf(mode));
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);

    const VolumeProgram& program = GetVolumeProgram(mode == VolumeAttribute::Shaded);
    UseProgram(m_handleProgram);
    EntryPoints::glUniform1iARB(program.tex, 0);
    EntryPoints::glUniform1iARB(program.tff, 1);
    if (mode == VolumeAttribute::Shaded) {
        EntryPoints::glUniform1fARB(program.shininess, shininess);
        EntryPoints::glUniform3fARB(program.gradientStep, gradientStep, gradientStep, gradientStep);
        EntryPoints::glUniform4fARB(program.ambient, ambient.r, ambient.g, ambient.b, ambient.a);
        EntryPoints::glUniform3fARB(program.lightDirection, lightDirection.x, lightDirection.y, lightDirection.z);
    }
}

void VolumeRenderer::CleanUp() {
    glDisable(GL_ALPHA_TEST);
    UseProgram(0);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDepthMask(GL_TRUE);
    SetBlendEquation(GL_FUNC_ADD_EXT);
    glDisable(GL_BLEND);
    for (const unsigned int unit : {1U, 0U}) {
        if (unit == 0 || EntryPoints::glActiveTexture != nullptr) {
            SelectTextureUnit(unit);
            for (const int target : {GL_TEXTURE_3D, GL_TEXTURE_2D, GL_TEXTURE_1D}) {
                glDisable(static_cast<GLenum>(target));
            }
        }
    }
    for (unsigned int i = 0; i < VolumeAttribute::userPlanes; ++i) {
        glDisable(GL_CLIP_PLANE0 + i);
    }
}

void VolumeRenderer::DrawBoundingBox(const Vector3f& lo, const Vector3f& hi) {
    const Vector3f corners[] = {lo, hi};
    glBegin(GL_LINES);
    for (int edge = 0; edge < 12; ++edge) {
        const int axis = edge / 4;
        const int fixed = ((edge & 1) << ((axis + 1) % 3)) | (((edge >> 1) & 1) << ((axis + 2) % 3));
        for (const int corner : {fixed, fixed | (1 << axis)}) {
            glVertex3f(corners[corner & 1].x, corners[(corner >> 1) & 1].y, corners[corner >> 2].z);
        }
    }
    glEnd();
}

// The outlines: of the whole volume twice, dimmed through all that comes after and clipped in its place, and of the
// bricks that are in the window.
void VolumeRenderer::DrawBoxes(const VolumeData& data, const VolumeAttribute& attribute,
                               const VisibleIntensities& visible) {
    glDisable(GL_TEXTURE_2D);
    const ClipPlanes clipPlanes(attribute);
    if (attribute.BoundingBoxIsVisible()) {
        const float r = RenderObjectAttribute::GetBoundingBoxRescale();
        const Vector3f lo = data.GetBB0() * (1.0F + r) - data.GetBB1() * r;
        const Vector3f hi = data.GetBB1() * (1.0F + r) - data.GetBB0() * r;
        const ColorRGBA color = attribute.GetColor();
        glColor4f(color.r * 0.25F, color.g * 0.25F, color.b * 0.25F, 1.0F);
        glDepthMask(GL_FALSE);
        DrawBoundingBox(lo, hi);
        glDepthMask(GL_TRUE);
        clipPlanes.Enable();
        glColor4f(color.r, color.g, color.b, 1.0F);
        DrawBoundingBox(lo, hi);
    }
    clipPlanes.Enable();
    for (int i = 0; attribute.ShowBrickBoxes() && i < data.getNumBricks(); ++i) {
        const Brick& brick = data.GetBrick(static_cast<unsigned int>(i));
        if (visible.MeetsWindow(brick.GetMinIntensity(), brick.GetMaxIntensity())) {
            data.drawBrickBoxes(i);
        }
    }
    clipPlanes.Disable();
}

bool VolumeRenderer::Render(RenderFrame& frame, bool quality, const Volume* volume) {
    assert(IsGlThread());
    CHECK_GL_ERROR();
    if (!m_bInit || frame.GetView() == nullptr) {
        return true;
    }
    const CleanUpScope cleanUp;
    VolumeData& data = volume->GetData();
    const VolumeAttribute& attribute = volume->GetAttribute();
    const VisibleIntensities visible(attribute.GetTransferFunctionTable());
    DrawBoxes(data, attribute, visible);
    if (!visible.Any()) {
        return true;
    }

    SelectTextureUnit(0);
    glEnableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.0F);
    View eye = *frame.GetView();
    if (frame.GetStereoMode() != STEREO_NONE) { // it stands beside the view's own
        glGetDoublev(GL_MODELVIEW_MATRIX, eye.GetModelviewMatrix());
    }
    const std::vector<unsigned int> order = OrderBackToFront(data, eye);
    RenderUserSlices(data, attribute, order);

    const float samples =
        quality ? attribute.GetSampleFactor() : attribute.GetSampleFactor() / frame.GetFastPassSampleDivisor();
    if (!IsKnownMode(attribute.GetRenderMode()) || !(samples > 0.0F)) {
        return true; // nothing to sample with
    }
    const ClipPlanes clipPlanes(attribute);
    clipPlanes.Enable();
    setMode(attribute.GetRenderMode(), -frame.GetLightTransformed(), attribute.GetSmoothFactor() * BRICK_VOXEL,
            attribute.GetMaterialShininess(), attribute.GetMaterialAmbientColor());
    glDepthMask(GL_FALSE);
    SelectTextureUnit(1);
    SetTransferFunction(m_transferTexture, attribute.GetTransferFunctionTable(), 1.0F / samples);
    SelectTextureUnit(0);
    return RenderBackToFront(frame, data, attribute, order, data.getVoxelSize() / samples, quality);
}

} // namespace KOVA::Quorvex
