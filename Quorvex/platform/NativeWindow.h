#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/platform/AviTypes.h>
#include <Quorvex/platform/Handles.h>

// For hosts: how native windows become window handles of the library, and how the library takes part in the host's
// event loop. Everything here is called on the thread that calls Quorvex::Init.

namespace KOVA::Quorvex {

#if !defined(_WIN32)
// Makes a handle for an X11 window that the host created, on any connection and with any toolkit. The library opens a
// connection of its own to displayName (null: the DISPLAY variable) and listens there for exposure, size, visibility
// and destruction; events that the host has selected still reach the host. The window stays the host's: when the host
// destroys it, the handle receives WM_DESTROY and draws nothing any more, but stays valid until ReleaseWindow.
// Attaching the same window again gives the same handle. Null when the display cannot be reached or has no such window,
// or when the process already works with another display.
//
// The kind of the first window that Quorvex::Init gets decides for the whole process: after an X11 window both kinds
// can be drawn to, after an off-screen window off-screen windows only.
QUORVEX_API HWND AttachX11Window(unsigned long xid, const char* displayName);
#endif

// Makes a window that is never shown, of 1 x 1 to 4096 x 4096 pixels; null for another size. Needs no X server; on
// Windows it is a hidden window.
QUORVEX_API HWND CreateOffscreenWindow(int width, int height);

// Changes the size of an off-screen window and delivers WM_SIZE. False, and nothing changed, for a size out of range
// or another kind of window.
QUORVEX_API bool ResizeOffscreenWindow(HWND window, int width, int height);

// Gives a handle that came from here back, once for every time that it was handed out. The host's own window is left
// alone. Release the render frames on the window first; one that is still there hears WM_DESTROY and is released.
QUORVEX_API void ReleaseWindow(HWND window);

// A file descriptor that becomes readable when work waits for the library: a tick of its timer or events of its
// windows. For poll, select or a toolkit's socket notifier; when it is readable, call ProcessEvents. Owned by the
// library, -1 when the system has no descriptor to give: on Windows, where the thread's message loop is what delivers
// the library's timer and window messages.
QUORVEX_API int EventDescriptor();

// Delivers everything that waits: window events, and at most one tick of every timer, which may draw one pass of one
// frame. Returns true when it delivered something. Call it whenever EventDescriptor is readable, and before the host
// goes to sleep in its event loop. On Windows it delivers the messages of the thread, the host's included; a host with
// a message loop of its own does not need it.
QUORVEX_API bool ProcessEvents();

// While a quality pass is drawn the library delivers its own events (on Windows all messages of the thread); this
// callback lets the host deliver one of its own too (a key or the mouse), so that input interrupts the pass. It returns
// true when it delivered an event, false when none waits. Null switches it off. user is handed back as it is.
QUORVEX_API void SetMessagePump(bool (*pump)(void* user), void* user);

// The library leaves its context current on the thread when it has drawn, and drawing makes it current again. A host
// that uses OpenGL on this thread as well takes turns: before it makes a context of its own current it puts the
// library's away with (null, null); before it calls the library, and before ProcessEvents, it puts its own away. What
// it then does with GL objects of the library outside the drawing (updating a mesh's buffers, for instance) needs the
// library's context back first: Quorvex::GetDeviceContext() and GetRenderContext().
//
// This function may also be called on another thread of the host, which makes GL objects in parallel: with
// Quorvex::GetRenderContextMultiThread() and a null device context, that is without a window to draw to.
//
// False when the system refuses, as it does while a context of another kind is current on the thread.
QUORVEX_API bool MakeContextCurrent(HDC deviceContext, HGLRC context);

// Chooses the codec of a recording for which none is set, in place of the system's dialog on Windows and of a codec
// that is taken unasked elsewhere. It finds a codec in fccHandler that it may leave there, and answers false to cancel
// the recording. window is the frame's. Null restores what was before.
QUORVEX_API void SetCodecChooser(bool (*chooser)(HWND window, AVICOMPRESSOPTIONS* options, void* user), void* user);

// Receives warnings (text and a caption, both UTF-8) that would otherwise go to standard error, on Windows to a message
// box. Null restores that. It is called on the thread on which what warns was called, reading a file for instance.
QUORVEX_API void SetWarningHandler(void (*handler)(const char* caption, const char* text, void* user), void* user);

} // namespace KOVA::Quorvex
