#pragma once

#include <string>

#include <Quorvex/platform/Handles.h>

namespace KOVA::Quorvex::cli {

// The library, ready to draw without a display, for as long as this object lives. One at a time; what has GL objects
// (frames, uploaded meshes) goes before it. Throws Failure when the system offers no OpenGL.
class OffscreenSession {
public:
    OffscreenSession();
    ~OffscreenSession();
    OffscreenSession(const OffscreenSession&) = delete;
    OffscreenSession& operator=(const OffscreenSession&) = delete;

    HWND Window() const { return m_window; }

private:
    HWND m_window = nullptr;
};

} // namespace KOVA::Quorvex::cli
