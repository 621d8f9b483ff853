#pragma once

#include <Quorvex/platform/Handles.h>

namespace KOVA::Quorvex {

// Keeps the GL state while something else is drawn, possibly in the middle of a pass: attributes, matrices, target and
// program. Inside the scope the target is the window, there is no program, and nothing is blended, cut off or masked.
// At its end all is as before, with the library's context current on the device context. That context has to be current
// from the beginning, on whatever window.
class InterruptedPass {
public:
    explicit InterruptedPass(HDC deviceContext);
    InterruptedPass(const InterruptedPass&) = delete;
    InterruptedPass& operator=(const InterruptedPass&) = delete;
    ~InterruptedPass();

private:
    HDC m_deviceContext;
    unsigned int m_frameBuffer;
    unsigned int m_program;
};

} // namespace KOVA::Quorvex
