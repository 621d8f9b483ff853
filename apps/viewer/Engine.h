#pragma once

#include <memory>

#include <QWindow>

#include <Quorvex/platform/Handles.h>

#include "EventBridge.h"

namespace KOVA::Quorvex::viewer {

// The library, started for as long as this lives, on a window of its own that is never shown: so windows with frames
// may come and go. One at a time; frames and scenes go before it. Throws Failure when there is no OpenGL.
class Engine : public QObject {
    Q_OBJECT

public:
    Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine() override;

    EventBridge& Bridge() { return *m_bridge; }

signals:
    void Warned(const QString& text); // by the library, on whatever thread it was at work

private:
    QWindow m_window;
    HWND m_handle = nullptr;
    std::unique_ptr<EventBridge> m_bridge;
};

} // namespace KOVA::Quorvex::viewer
