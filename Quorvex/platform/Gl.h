#pragma once

#include <Quorvex/platform/Handles.h>

// Seam: OpenGL contexts on windows. All functions are called on the thread of Quorvex::Init.

namespace KOVA::Quorvex::platform {

struct PixelFormat {
    int colorBits = 32;
    int depthBits = 24;
    int stencilBits = 8;
    bool doubleBuffer = true;
    bool swapExchange = false; // a hint: the back buffer receives the old front buffer at a swap
};

// Gives a device context its pixel format, once; a later call on the same device context returns true and changes
// nothing. False when the device context is null or its window is gone, or when no such format can be had; a system may
// choose the nearest one that it has.
bool SetPixelFormat(HDC deviceContext, const PixelFormat& format);

// Makes a compatibility-profile context for device contexts of the given one's pixel format. With a share context the
// new one shares its textures, buffers, programs and display lists. Null on failure.
HGLRC CreateContext(HDC deviceContext, HGLRC share);

// Destroys a context, taking it off the thread first when it is current. Null is ignored.
void DeleteContext(HGLRC context);

// Makes the context current with the device context as draw and read target, or without one (then only frame-buffer
// objects can be drawn to); with a null context none is current afterwards. On a window that was destroyed it succeeds
// and drawing goes nowhere, so that GL objects can still be freed. False when the driver refuses (another library's
// context is current on this thread, for instance).
bool MakeCurrent(HDC deviceContext, HGLRC context);

// Shows the back buffer. Nothing happens on a null device context or a window that is gone.
void SwapWindowBuffers(HDC deviceContext);

// Entry point of that name, or null when the driver does not export it. A context must be current.
using GlProcedure = void (*)();
GlProcedure GetGlProcedure(const char* name);

} // namespace KOVA::Quorvex::platform
