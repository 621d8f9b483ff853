#pragma once

#include <list>
#include <vector>

#include <Quorvex/core/Export.h>
#include <Quorvex/platform/AviTypes.h>
#include <Quorvex/platform/Handles.h>

namespace KOVA::Quorvex {

class RenderFrame;

// The bits of Quorvex::s_uiQXExtensions.
enum Capability : unsigned int {
    CAPABILITY_FRAME_BUFFER = 1, // off-screen targets: anti-aliasing, captures
    CAPABILITY_BASE = 2,         // always
    CAPABILITY_VOLUME = 4,       // volumes can be drawn
    CAPABILITY_SHADER = 8        // shader programs
};

// What all frames of the process share: the main device context, the rendering contexts, the capabilities of the driver
// and the scheduler that draws the frames. The host calls Init once before it makes frames, and Release at the end.
//
// There is one thread: the one that calls Init. All drawing happens there, inside ProcessEvents (or the thread's
// message loop) and inside the calls of the interface.
class QUORVEX_API Quorvex {
public:
    // Starts the scheduler, gives the window's device context its pixel format, creates the contexts, makes the main
    // one current and probes the driver. False as soon as one of that fails; what was done stays done.
    static bool Init(HWND window, HDC deviceContext);
    static bool Init(HWND window);
    static bool Init(HDC deviceContext);

    // Probes the capabilities with the main context current. Always true.
    static bool InitGL();

    // For the end of the process: frees the process-wide GL objects and deletes the main context. The timer goes on and
    // the second context stays.
    static void Release();
    static void ReleaseGL();

    // True when each of the names, separated by blanks, is a whole token of the driver's extension string.
    static bool CheckGLExtension(const char* names);

    // True when all capability bits of the mask were found (see Capability).
    static bool CheckQXExtension(unsigned int mask) { return (s_uiQXExtensions & mask) == mask; }

    // The driver's extension string; the names that one capability bit stands for, null for bits without.
    static const char* GetGLExtensionString();
    static const char* GetGLExtensionString(unsigned int bit);

    // The codecs that RenderFrame's recordings can be compressed with. Those that are known to the system but cannot be
    // opened (they belong to hardware that is missing, for instance) are listed too, without a description. Where
    // several have the same code, a recording takes the first that can be opened. On Linux they are FFmpeg's, each
    // encoder by itself (szDriver is its name), after "DIB ", which does not compress. Finding out takes some tenths of
    // a second; no context is needed.
    static std::vector<ICINFO> GetInstalledAVICodecs();

    static HDC GetDeviceContext() { return s_hDeviceContext; }
    static HGLRC GetRenderContext() { return s_hRenderContext; }
    static HGLRC GetRenderContextMultiThread() { return s_hRenderContextMultiThread; }
    static RenderFrame* GetBusyFrame() { return s_pBusy; }

    // True while a fast pass is asked for: a quality pass under way then gives up.
    static bool BreakRendering() { return !s_jobFast.empty(); }

    // One tick of the scheduler, every 25 ms: draws at most one pass of one frame, fast ones first. The arguments are
    // not used.
    static void TimerProc(HWND window, UINT message, UINT_PTR id, DWORD time);

    static HWND s_hWnd;                       // the window of Init
    static unsigned int s_uiQXExtensions;     // capability bits, 0 before InitGL
    static RenderFrame* s_pBusy;              // whose quality pass is being drawn by the scheduler
    static HGLRC s_hRenderContextMultiThread; // second context, shares objects with the main one; for the host
    static HGLRC s_hRenderContext;            // with which all frames draw
    static HDC s_hDeviceContext;              // the device context of Init
    static std::list<RenderFrame*> s_jobFast; // waiting for a fast pass, each frame at most once
    static std::list<RenderFrame*> s_jobQuality;
    static std::list<RenderFrame*> s_vRenderFrames; // every frame that was initialised and not released

private:
    static void DrawFastJob();
    static void DrawQualityJob();
};

} // namespace KOVA::Quorvex
