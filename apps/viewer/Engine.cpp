#include "Engine.h"

#include <Quorvex/core/Facade.h>
#include <Quorvex/platform/NativeWindow.h>

#include "Failure.h"
#include "X11Window.h"

namespace KOVA::Quorvex::viewer {

Engine::Engine() {
    SetWarningHandler([](const char* /*caption*/, const char* text,
                         void* self) { emit static_cast<Engine*>(self)->Warned(QString::fromUtf8(text)); },
                      this);
    m_window.create();
    m_handle = Attach(m_window.winId()); // NOLINT(cppcoreguidelines-prefer-member-initializer): handler first
    if (m_handle == nullptr || !Quorvex::Init(m_handle)) {
        throw Failure("OpenGL cannot be started on this display");
    }
    m_bridge = std::make_unique<EventBridge>();
}

Engine::~Engine() {
    m_bridge.reset();
    Quorvex::Release();
    ReleaseWindow(m_handle);
    SetWarningHandler(nullptr, nullptr);
}

} // namespace KOVA::Quorvex::viewer
