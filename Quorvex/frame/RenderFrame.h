#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/frame/FrameBuffer.h>
#include <Quorvex/platform/Handles.h>
#include <Quorvex/scene/ObjectTypes.h>

namespace KOVA::Quorvex {

class Recording;
class View;

namespace platform {
struct CodecOptions;
}

// How the pictures of the two eyes come into one. Rows are counted from the bottom of the picture, columns from its
// left side, both from 0.
enum StereoMode : std::uint32_t {
    STEREO_NONE = 0,
    STEREO_ANAGLYPH = 1,        // grey; right eye red, left eye green and blue
    STEREO_ROWS = 2,            // right eye on even rows, left eye on odd ones
    STEREO_ROWS_ALTERNATE = 3,  // the same
    STEREO_COLUMNS = 4,         // right eye on odd columns, left eye on even ones
    STEREO_COLUMNS_SWAPPED = 5, // the other way round
};

// What is drawn has at most so many pixels each way, and each way by itself: where anti-aliasing asks for more on the
// longer side only, the picture loses its proportions.
inline constexpr unsigned int MAX_PASS_SIZE = 4096;

// One picture in one window: binds the window's device context, a camera (View, the host's) and the scene that the
// frame itself is (see ObjectTypes). It subclasses the window, so that exposing and resizing show the last picture
// again, and is drawn by the scheduler of Quorvex: after Render() first in a fast pass, then in a quality pass that any
// new request interrupts.
//
// All calls on the thread of Quorvex::Init, after it. Sizes are in pixels. Release a frame before its window goes; a
// frame whose window is destroyed first is aborted and released.
class QUORVEX_API RenderFrame : public ObjectTypes {
public:
    RenderFrame();

    // Copies every member, handles and flags included, and the scene as ObjectTypes does. The copy is not scheduled,
    // and the window stays the original's: releasing the copy does not touch it.
    RenderFrame(const RenderFrame& other);
    RenderFrame& operator=(const RenderFrame& other);
    ~RenderFrame();

    // Attaches the frame to a window: subclasses it, gives it a pixel format and registers the frame. False for a null
    // handle or view (nothing changed), or when there is no pixel format (the window is as before).
    bool Init(HWND window, View* view);
    bool Init(HDC deviceContext, View* view);

    // Stores the size and registers the frame with the scheduler; the last step of Init. Always true.
    bool InitGL(unsigned int width, unsigned int height);

    // Releases and returns false, for a host that gives up its own set-up.
    bool InitFailed();

    // Takes the frame out of the scheduler; Release also gives the window back.
    void ReleaseGL();
    void Release();

    // Requests a redraw. Requests before the next tick make one pass.
    void Render();

    // Draws a pass now and shows it. False when it was interrupted, and then not shown, or could not be drawn: all
    // frames draw with one context, so there is no pass inside another.
    bool Render(bool quality, unsigned int width, unsigned int height);

    // Draws a pass of a picture of this size into the current context; the caller swaps. With frame-buffer objects the
    // picture is drawn at size x anti-aliasing (MAX_PASS_SIZE at most each way) and then shown in the window. False
    // when it was interrupted, or asked for from inside a pass of this frame. A frame without a view draws nothing and
    // returns true.
    bool DrawGL(unsigned int width, unsigned int height, bool quality);

    // Shows the last picture, scaled into the window; draws a fast pass when there are no frame-buffer objects.
    void Display();
    void DrawBackground();

    // Parts of a pass. The grid needs ShowGrid and a camera that looks and stands exactly along the world's axes; it
    // lies in the plane through the middle of the scene, faces the viewer, and its spacing is 1, 2 or 5 times a power
    // of ten. The axes of the coordinate system are shown in the lower left corner: x red, y green, z blue. The
    // rotation axis is a centre line through the scene. They leave GL's state as they find it.
    void DrawBackgroundUserView();
    void RenderCoordAxes();
    void RenderRotationAxis();

    // Writes a text on the current target, in letters of the size of the grid's: the left end of its base line is at
    // (x, y), in normalised device coordinates (-1..1, from the left and from the bottom). UTF-8, on Windows in the
    // process's code page. Nothing without a font.
    void glTextOut(const char* text, float x, float y, ColorRGB color) const;

    // For objects while they draw: the fraction (0..1) of the current object that is done. Shows a line of progress and
    // lets input through, each when it is due, so that calls may be many; true means that the pass must stop now, at
    // every call until it does. ProgressObject reports that one more object is done.
    bool Progress(float fraction);
    bool ProgressObject();

    // What Progress would answer, without letting input through: whether a redraw was requested since the pass began,
    // or the frame was aborted.
    bool IsStopRequested() const;

    // The frame is never drawn again by the scheduler.
    void AbortRendering() { m_abort = true; }
    bool IsAborted() const { return m_abort; }
    bool IsBusy() const { return m_busy; } // inside DrawGL

    // Draws a quality pass of width x height and writes it as a 24-bit bitmap. False, and no file, for a width that is
    // not a multiple of 4, without frame-buffer objects, when the pass is interrupted (it is then requested again), or
    // when the file cannot be written in full.
    bool RenderToBitmap(std::string path, unsigned int width, unsigned int height);

    // The same picture of any width in memory: rows from the top, 3 bytes (R, G, B) a pixel, no padding. What is drawn
    // larger or smaller because of the anti-aliasing factor is resampled to the size asked for. On failure pixels stays
    // as it was.
    bool RenderToPixels(std::vector<unsigned char>& pixels, unsigned int width, unsigned int height);

    // Recordings: AVI files of 25 quality passes a second, each a key frame, with all that is drawn besides the scene.
    // They need frame-buffer objects. A file takes its name when it is complete; until then what stood there before is
    // untouched, and after a failure it stays so. An open recording keeps its size whatever becomes of the window. A
    // pass that new input interrupts is drawn again after the input has had its fast pass.
    //
    // The codec is the one that was set last by AVISetCodec or AVIStart: a code of four characters, the first one in
    // the lowest byte, of Quorvex::GetInstalledAVICodecs, or "DIB " for frames that are not compressed. Without one, or
    // with 0, the user is asked, at the first recording: on Windows in the system's dialog, elsewhere by the host's
    // chooser (see SetCodecChooser); without a chooser it is Motion JPEG, or uncompressed where that is missing.

    // Begins a recording of the size of the window, rounded down to multiples of 4; codec 0 stands for the one that is
    // set. A recording that is open is finished first. False when the file cannot be written, the codec cannot be
    // opened, the user cancels, or the window is too small.
    bool AVIStart(std::string path, unsigned long codec);

    // Draws a quality pass, shows it and adds it to the recording. Returns the number of frames recorded since
    // AVIStart: it has not grown when the frame could not be drawn or recorded, and never does without a recording. A
    // full disk may be noticed a few frames late. On Windows a file holds 2 GiB; then it is full but good.
    int AddAviFrame();

    // Finishes the recording. True when there is none, or all of it has been written; else there is no file.
    bool AVIStop();

    // For the next recordings; true. Whether there is such a codec is seen when one begins.
    bool AVISetCodec(unsigned long handler);

    // Records a whole turn of the camera: before each frame the view turns by 2 pi / frames about an axis through the
    // world's origin (see View::RotateWorld), so that the last one shows what was seen before. Width and height are
    // those of the frames, multiples of 4. While the call lasts AVIIsHighQuality is true and the scheduler leaves this
    // frame alone; afterwards it is asked to show the view in the window again. False, and no file is left, when the
    // recording cannot be begun (as for AVIStart), cannot be written in full, or a frame cannot be drawn because the
    // frame was aborted or released meanwhile; a recording that the host stops (AVIStop) from a message that a pass
    // lets through is kept, but the answer is false.
    bool AVIRotate(std::string path, unsigned int width, unsigned int height, const Vector3f& axis,
                   unsigned int frames);

    // The same for an animation of the host's: before each frame (0 to frames - 1) it calls callback(user, frame,
    // frames), which changes the scene or the view. False without a callback.
    bool AVIAnimate(std::string path, unsigned int width, unsigned int height, unsigned int frames,
                    void (*callback)(void* user, unsigned int frame, unsigned int frames), void* user);

    // The mesh that is nearest under a pixel of the window, origin at the top left; null when there is none. Hidden
    // meshes and those of nested groups are not found; a mesh that is drawn as lines or points is found where these
    // are. In stereo it is asked for in the middle between the eyes. Draws nothing. Interrupts a quality pass that is
    // under way, which is made again later; may be called from a message that this pass lets through.
    Mesh* HitTest(unsigned int x, unsigned int y);

    // 0 (none) switches stereo off and is always possible; false, and nothing changed, for a mode that cannot be had:
    // unknown ones, and all without frame-buffer objects. The pictures of interleaved rows and columns have one pixel
    // for each of the window's; anti-aliasing acts within the eyes' pictures, which are half as high or wide (rounded
    // up). Call Render() to see the change.
    virtual bool SetStereoMode(StereoMode mode);
    StereoMode GetStereoMode() const { return m_stereoMode; }

    // How far the scene is shifted sideways for each eye, in world units: to the right for the right eye, to the left
    // for the left one when it is positive. In left-handed views the two pictures coincide at the distance of the
    // world's origin (or at 1, when the camera is nearer than that); what is in front of it stands out of the screen
    // for a viewer whose left eye sees the right eye's picture, as red-and-cyan glasses with the red on the left do.
    // A negative effect is for those who see each picture with its own eye. In right-handed views the pictures nowhere
    // coincide; hosts that look right-handed should turn the view's z axis round for stereo (mirror the third row of
    // the modelview and make the projection left-handed), which shows the same picture.
    void SetStereoEffect(float effect) { m_stereoEffect = effect; }
    float GetStereoEffect() const { return m_stereoEffect; }

    // Between these two what is textured is drawn in grey levels.
    void GrayScaleRendering_SwitchOn();
    void GrayScaleRendering_SwitchOff();

    void SetView(View* view) { m_view = view; } // not owned
    View* GetView() const { return m_view; }
    void SetScreenSize(unsigned int width, unsigned int height);
    unsigned int GetScreenWidth() const { return m_screenWidth; }
    unsigned int GetScreenHeight() const { return m_screenHeight; }
    float GetScreenRatio() const { return static_cast<float>(m_screenWidth) / static_cast<float>(m_screenHeight); }
    HDC GetDeviceContext() const { return m_deviceContext; }

    // Gradient from top to bottom. The single colour is the mean, with the top's alpha.
    void SetBackgroundColor(const ColorRGBA& color);
    void SetBackgroundColor(const ColorRGBA& top, const ColorRGBA& bottom);
    ColorRGBA GetBackgroundColorTop() const { return m_backgroundTop; }
    ColorRGBA GetBackgroundColorBottom() const { return m_backgroundBottom; }
    ColorRGBA GetBackgroundColor() const;

    // Direction to the light in eye coordinates; (0, 0, -1) at first, which suits left-handed views.
    void SetLight(const Vector3f& light) { m_light = light; }
    Vector3f GetLight() const { return m_light; }
    Vector3f GetLightTransformed() const { return m_lightTransformed; } // in world coordinates, as of the last pass

    void SetDesiredFPS(float fps) { m_desiredFPS = fps; }
    float GetDesiredFPS() const { return m_desiredFPS; }
    void SetAntiAliasing(float factor) { m_antiAliasing = factor; } // pixels drawn per pixel shown, each way
    float GetAntiAliasing() const { return m_antiAliasing; }

    // How many pixels of the picture make one of those in which points and lines of overlays, axes, the rotation axis,
    // the grid and their texts have their sizes: on displays of high density, what the host's toolkit scales its own
    // text by. 1 at first.
    void SetPixelRatio(float ratio) { m_pixelRatio = ratio; }
    float GetPixelRatio() const { return m_pixelRatio; }

    // In a fast pass a volume's sample factor is divided by this.
    void SetFastPassSampleDivisor(float divisor) { m_fastPassSampleDivisor = divisor; }
    float GetFastPassSampleDivisor() const { return m_fastPassSampleDivisor; }

    // After a fast pass a quality pass follows only while this is above 1.
    void SetQualityThreshold(float threshold) { m_qualityThreshold = threshold; }
    float GetQualityThreshold() const { return m_qualityThreshold; }

    // What is drawn besides the scene: the grid in every kind of picture, the axes in pictures for one eye.
    void SetCoordAxesEnabled(bool enabled) { m_coordAxesEnabled = enabled; }
    bool GetCoordAxesEnabled() const { return m_coordAxesEnabled; }
    void SetRotationsAxisEnabled(bool enabled) { m_rotationAxisEnabled = enabled; }
    bool GetRotationAxisEnabled() const { return m_rotationAxisEnabled; }
    void ShowGrid(bool show) { m_showGrid = show; }

    // A point of the rotation axis and its direction, of any length but 0, in world coordinates. At first it is the z
    // axis, about which scanners turn their parts.
    void SetRotationAxis(const Vector3f& point, const Vector3f& direction);

    // The numbers at the grid: the world's point (x, y, z) is shown as unit * (x, y, z) + origin. At first they are the
    // world's coordinates; for hosts that bring their scenes to another size or place.
    void SetGridUnit(double unit, double originX, double originY, double originZ);

    // While AVIRotate or AVIAnimate records.
    bool AVIIsHighQuality() const { return m_aviHighQuality; }
    bool SupportsStencil() const;

    // Seconds that the last pass took, finished or not.
    double GetPassDuration() const { return m_passDuration; }

    // The same window.
    bool operator==(const RenderFrame& other) const { return m_window == other.m_window; }
    bool operator!=(const RenderFrame& other) const { return !(*this == other); }

    // The window procedure of attached windows.
    static LRESULT WndProcRenderFrame(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    struct Size {
        unsigned int width, height;
    };

    struct Share { // of the window, in each direction
        float x, y;
    };

    // What a pass draws: settings are kept as they were at its start, since the host may change them while it is let
    // in.
    struct Pass {
        StereoMode mode;
        Size picture;  // that was asked for
        Size internal; // times anti-aliasing
        Size composed; // in which it is shown
        bool quality;
    };

    bool OwnsWindow() const;
    Size InternalSize(Size picture) const;
    Size ComposedSize(StereoMode mode, Size picture) const;
    Share ShareOfWindow(Size picture) const;
    void SetUpLight();
    void CopyProjection(Size target, double* projection) const;
    void LoadCamera(Size target, double eyeShift);
    void BeginTarget(Size target, Size picture);
    bool HasBrightBackground() const;
    bool DrawMono(const Pass& pass);
    bool DrawStereo(const Pass& pass);
    bool DrawEye(const Pass& pass, FrameBuffer& target, float eyeShift);
    static Size EyeSize(StereoMode mode, Size internal);
    void ComposeAnaglyph(const FrameBuffer& left, const FrameBuffer& right);
    static void ComposeInterleaved(StereoMode mode, const FrameBuffer& left, const FrameBuffer& right);
    void ShowProgressLine(double now);
    bool LetInputThrough();
    void DrawLastPicture() const;

    // Shows the last picture in the window; also while another frame is being drawn, which goes on undisturbed.
    void Present();

    // Draws a quality pass and reads it at the size asked for: 4 bytes (RGBA) a pixel, bottom row first. Null on
    // failure.
    std::unique_ptr<unsigned char[]> CapturePicture(unsigned int width, unsigned int height);
    std::unique_ptr<unsigned char[]> ReadComposedPicture(unsigned int width, unsigned int height) const;

    // A quality pass for a picture to keep, shown in the window or not. False as DrawGL, and without a context.
    bool DrawCapture(Size size, bool show);

    class SelfRecording;
    bool OpenRecording(const std::string& path, Size size, unsigned long codec);
    std::unique_ptr<unsigned char[]> DrawRecordedPicture(const Recording* recording, Size size, bool show);
    bool RecordFrames(const std::string& path, Size size, unsigned int frames,
                      const std::function<void(unsigned int frame)>& prepare);

    FrameBuffer m_leftBuffer;
    FrameBuffer m_rightBuffer;
    FrameBuffer m_composedBuffer;
    bool m_showGrid = false;
    bool m_busy = false;
    HWND m_window = nullptr;
    HDC m_deviceContext = nullptr;
    float m_desiredFPS = 25.0F;
    float m_fastPassSampleDivisor = 100.0F;
    float m_qualityThreshold = 100.0F;
    float m_antiAliasing = 1.0F;
    float m_pixelRatio = 1.0F;
    float m_objectsDone = 0.0F;
    StereoMode m_stereoMode = STEREO_NONE;
    float m_stereoEffect = 0.08F;
    bool m_aviHighQuality = false;
    std::shared_ptr<Recording> m_recording;                       // open; null when there is none
    std::shared_ptr<const platform::CodecOptions> m_codecOptions; // for recordings; null when none was chosen
    unsigned int m_aviFrames = 0;                                 // recorded
    Size m_aviSize{0, 0};                                         // in which AddAviFrame records
    unsigned int m_screenWidth = 10;
    unsigned int m_screenHeight = 10;
    View* m_view = nullptr;
    ColorRGBA m_backgroundTop{0.0F, 0.0F, 0.3F, 1.0F};
    ColorRGBA m_backgroundBottom{0.85F, 0.85F, 1.0F, 1.0F};
    bool m_coordAxesEnabled = false;
    bool m_rotationAxisEnabled = false;
    Vector3f m_rotationAxisPoint{0.0F, 0.0F, 0.0F};
    Vector3f m_rotationAxisDirection{0.0F, 0.0F, 1.0F};
    double m_gridUnit = 1.0;
    double m_gridOrigin[3] = {0.0, 0.0, 0.0};
    double m_loadedProjection[16] = {}; // the camera of the picture that is being drawn
    double m_loadedModelview[16] = {};
    float m_targetScaleX = 1.0F; // its pixels for each of those in which sizes are meant
    float m_targetScaleY = 1.0F;
    bool m_abort = false;
    Vector3f m_light{0.0F, 0.0F, -1.0F};
    Vector3f m_lightTransformed{0.0F, 0.0F, 0.0F};
    WNDPROC m_previousProcedure = nullptr;
    float m_progress = 0.0F;
    bool m_stopped = false;                                 // the pass was told to stop
    int m_progressLine = 0;                                 // pixels shown of it
    double m_nextLine = 0.0;                                // counter from which it is due again
    double m_nextPoll = 0.0;                                // counter from which messages are looked for
    const RenderFrame* m_waitingRequest = nullptr;          // the last one that waited when the pass began
    std::shared_ptr<const unsigned int> m_grayScaleProgram; // program object, made at first use, shared by copies
    double m_counterFrequency;
    double m_passDuration = 0.0;
};

} // namespace KOVA::Quorvex
