// One pass of a frame: light, target, background, camera, scene.

#include <algorithm>
#include <cassert>
#include <cmath>

#include <Quorvex/core/Extensions.h>
#include <Quorvex/core/Facade.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/BusyFrames.h>
#include <Quorvex/frame/PictureQuad.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex {

namespace {

unsigned int InternalExtent(unsigned int extent, double factor) {
    const double scaled = extent * factor;
    return scaled >= 1.0 ? static_cast<unsigned int>(std::min<double>(scaled, MAX_PASS_SIZE)) : 1;
}

// 1 / distance of the camera from the world's origin, 1 for a camera that is nearer than 1.
double EyeShiftFactor(const double* m) {
    double squares = 0.0;
    for (int axis = 0; axis < 12; axis += 4) {
        const double coordinate = m[axis] * m[12] + m[axis + 1] * m[13] + m[axis + 2] * m[14];
        squares += coordinate * coordinate;
    }
    const double distance = std::sqrt(squares);
    return distance > 1.0 ? 1.0 / distance : 1.0;
}

// A flag that is set for the length of a pass, and the seconds that the pass took.
class PassScope {
public:
    PassScope(bool& busy, double& duration, double frequency)
        : m_busy(busy), m_duration(duration), m_frequency(frequency), m_start(platform::CounterNow()) {
        m_busy = true; // NOLINT(cppcoreguidelines-prefer-member-initializer): it refers to the frame's flag
    }
    PassScope(const PassScope&) = delete;
    PassScope& operator=(const PassScope&) = delete;
    ~PassScope() {
        m_busy = false;
        const auto ticks = static_cast<double>(platform::CounterNow() - m_start);
        m_duration = m_frequency > 0.0 ? ticks / m_frequency : 0.0;
    }

private:
    bool& m_busy;
    double& m_duration;
    double m_frequency;
    std::int64_t m_start;
};

} // namespace

bool RenderFrame::Render(bool quality, unsigned int width, unsigned int height) {
    if (m_busy || FindBusyFrame() != nullptr) {
        return false; // asked for from inside a pass: the context is taken
    }
    if (!platform::MakeCurrent(m_deviceContext, Quorvex::s_hRenderContext)) {
        return false;
    }
    const bool finished = DrawGL(width, height, quality);
    if (finished) {
        platform::SwapWindowBuffers(m_deviceContext);
    }
    return finished;
}

RenderFrame::Size RenderFrame::InternalSize(Size picture) const {
    // Straight into the window there is one pixel for each.
    const double factor = Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER) ? double{m_antiAliasing} : 1.0;
    return {InternalExtent(picture.width, factor), InternalExtent(picture.height, factor)};
}

// Interleaved rows and columns would be mixed again if they were brought to another size.
RenderFrame::Size RenderFrame::ComposedSize(StereoMode mode, Size picture) const {
    if (mode == STEREO_NONE || mode == STEREO_ANAGLYPH) {
        return InternalSize(picture);
    }
    const double factor = std::min(1.0, double{MAX_PASS_SIZE} / std::max(picture.width, picture.height));
    return {InternalExtent(picture.width, factor), InternalExtent(picture.height, factor)};
}

bool RenderFrame::DrawGL(unsigned int width, unsigned int height, bool quality) {
    assert(IsGlThread());
    if (m_view == nullptr) {
        return true;
    }
    if (m_busy) {
        return false;
    }
    const Size picture{width, height};
    const Pass pass{m_stereoMode, picture, InternalSize(picture), ComposedSize(m_stereoMode, picture), quality};
    const bool offScreen = Quorvex::CheckQXExtension(CAPABILITY_FRAME_BUFFER);
    m_progress = 0.0F;
    m_objectsDone = 0.0F;
    m_progressLine = 0;
    m_stopped = false;
    m_nextPoll = 0.0;
    m_waitingRequest = Quorvex::BreakRendering() ? Quorvex::s_jobFast.back() : nullptr;
    const PassScope scope(m_busy, m_passDuration, m_counterFrequency);

    SetUpLight();
    if (offScreen) {
        m_composedBuffer.SetInternalResolution(pass.composed.width, pass.composed.height, HoldsVolumes());
    }
    const bool finished = pass.mode == STEREO_NONE ? DrawMono(pass) : DrawStereo(pass);
    if (finished && offScreen) {
        Display();
    }
    return finished;
}

void RenderFrame::SetUpLight() {
    // The light is fixed to the eye; objects that shade in world coordinates want it turned back by the camera.
    const double* m = m_view->GetModelviewMatrix();
    const Vector3f& l = m_light;
    m_lightTransformed = Vector3f(static_cast<float>(l.x * m[0] + l.y * m[1] + l.z * m[2]),
                                  static_cast<float>(l.x * m[4] + l.y * m[5] + l.z * m[6]),
                                  static_cast<float>(l.x * m[8] + l.y * m[9] + l.z * m[10]));

    const float black[] = {0.0F, 0.0F, 0.0F, 1.0F};
    const float white[] = {1.0F, 1.0F, 1.0F, 1.0F};
    const float direction[] = {l.x, l.y, l.z, 0.0F};
    glEnable(GL_LIGHT0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_AMBIENT, black);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, white);
    glLightfv(GL_LIGHT0, GL_SPECULAR, white);
    CHECK_GL_ERROR();
    glLightfv(GL_LIGHT0, GL_POSITION, direction);
}

void RenderFrame::CopyProjection(Size target, double* projection) const {
    std::copy_n(m_view->GetProjectionMatrix(), 16, projection);
    projection[5] *= static_cast<double>(target.width) / target.height;
}

// The eye shift moves the scene sideways and shears it back around the distance of the world's origin.
void RenderFrame::LoadCamera(Size target, double eyeShift) {
    CopyProjection(target, m_loadedProjection);
    std::copy_n(m_view->GetModelviewMatrix(), 16, m_loadedModelview);
    if (eyeShift != 0.0) {
        m_loadedProjection[8] -= eyeShift * m_loadedProjection[0] * EyeShiftFactor(m_loadedModelview);
        m_loadedModelview[12] += eyeShift;
    }
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(m_loadedProjection);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(m_loadedModelview);
}

// Makes the bound target of this size ready for what is shown as a picture of another one.
void RenderFrame::BeginTarget(Size target, Size picture) {
    m_targetScaleX = m_pixelRatio * static_cast<float>(target.width) / static_cast<float>(picture.width);
    m_targetScaleY = m_pixelRatio * static_cast<float>(target.height) / static_cast<float>(picture.height);
    glEnable(GL_DEPTH_TEST);
    glViewport(0, 0, static_cast<GLsizei>(target.width), static_cast<GLsizei>(target.height));
    glClear(GL_DEPTH_BUFFER_BIT); // the background covers the colours
}

bool RenderFrame::DrawMono(const Pass& pass) {
    m_composedBuffer.BeginCapture();
    BeginTarget(pass.composed, pass.picture);
    DrawBackground();
    LoadCamera(pass.composed, 0.0);
    DrawBackgroundUserView();
    const bool finished = ObjectTypes::Render(*this, pass.quality);
    if (m_rotationAxisEnabled) {
        RenderRotationAxis();
    }
    if (finished && m_coordAxesEnabled) {
        RenderCoordAxes();
    }
    m_composedBuffer.EndCapture();
    return finished;
}

void RenderFrame::DrawBackground() {
    const ColorRGBA& top = m_backgroundTop;
    const ColorRGBA& bottom = m_backgroundBottom;
    LoadNormalizedDeviceMatrices();
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST); // which switches depth writes off as well
    glBegin(GL_QUADS);
    glColor3f(bottom.r, bottom.g, bottom.b);
    glVertex2f(-1.0F, -1.0F);
    glVertex2f(1.0F, -1.0F);
    glColor3f(top.r, top.g, top.b);
    glVertex2f(1.0F, 1.0F);
    glVertex2f(-1.0F, 1.0F);
    glEnd();
    glEnable(GL_DEPTH_TEST);
}

} // namespace KOVA::Quorvex
