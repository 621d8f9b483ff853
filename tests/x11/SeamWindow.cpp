#include "SeamWindow.h"

#include <ostream>

#include <GL/gl.h>

#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/WindowSystem.h>

using namespace KOVA::Quorvex;

namespace {

HGLRC s_context = nullptr;

} // namespace

void PrintTo(const SeamWindow::Message& message, std::ostream* stream) {
    *stream << "message " << message.message << " (" << message.wParam << ") " << message.width << " x "
            << message.height;
}

SeamWindow::SeamWindow(Window xid)
    : m_window(AttachX11Window(xid, nullptr)), m_deviceContext(platform::AcquireDeviceContext(m_window)) {
    platform::SetWindowUserData(m_window, this);
    platform::SetWindowProcedure(m_window, Procedure);
}

SeamWindow::~SeamWindow() {
    platform::SetWindowProcedure(m_window, nullptr);
    platform::ReleaseDeviceContext(m_window, m_deviceContext);
    ReleaseWindow(m_window);
}

void SeamWindow::Release() {
    ReleaseWindow(m_window);
    platform::ReleaseDeviceContext(m_window, m_deviceContext);
    m_window = nullptr;
    m_deviceContext = nullptr;
}

bool SeamWindow::MakeCurrent() {
    if (!platform::SetPixelFormat(m_deviceContext, {})) {
        return false;
    }
    if (s_context == nullptr) {
        s_context = platform::CreateContext(m_deviceContext, nullptr);
    }
    return platform::MakeCurrent(m_deviceContext, s_context);
}

bool SeamWindow::Fill(const Color& color) {
    if (!MakeCurrent()) {
        return false;
    }
    unsigned int width = 0;
    unsigned int height = 0;
    platform::GetClientSize(m_window, &width, &height);
    glViewport(0, 0, static_cast<int>(width), static_cast<int>(height));
    glClearColor(static_cast<float>(color.red) / 255.0F, static_cast<float>(color.green) / 255.0F,
                 static_cast<float>(color.blue) / 255.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    platform::SwapWindowBuffers(m_deviceContext);
    platform::GetClientSize(m_window, &width, &height); // the answer comes when the server has done what was before
    return true;
}

LRESULT SeamWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = static_cast<SeamWindow*>(platform::GetWindowUserData(window));
    self->messages.push_back({message, wParam, static_cast<int>(lParam & 0xFFFF), static_cast<int>(lParam >> 16)});
    if (self->onMessage) {
        self->onMessage(message);
    }
    return platform::DefaultWindowProcedure(window, message, wParam, lParam);
}
