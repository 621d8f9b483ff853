#pragma once

#include <Quorvex/platform/linux/Records.h>

// What the windows' OpenGL output goes to. A window has at most one surface, kept in its record: the system refuses a
// second one.

namespace KOVA::Quorvex::platform {

// An EGLSurface, null when it cannot be had or the EGL display is not open yet.
void* CreateWindowSurface(unsigned long xid);
void* CreatePbuffer(int width, int height);

// Gives the window another surface, or none, and destroys the one that it had. A context that is current on it stays
// current on the new one; without a new one, none is current afterwards.
void ReplaceSurface(WindowRecord* window, void* surface);

} // namespace KOVA::Quorvex::platform
