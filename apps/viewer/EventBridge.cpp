#include "EventBridge.h"

#include <algorithm>
#include <exception>
#include <list>
#include <utility>

#include <QAbstractEventDispatcher>
#include <QScopedValueRollback>

#include <Quorvex/core/Facade.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex::viewer {

namespace {

RenderFrame* FrameOfPass() {
    const auto& frames = Quorvex::s_vRenderFrames;
    const auto busy =
        std::find_if(frames.begin(), frames.end(), [](const RenderFrame* frame) { return frame->IsBusy(); });
    return busy != frames.end() ? *busy : nullptr;
}

bool IsIn(const std::list<RenderFrame*>& frames, RenderFrame* frame) {
    return std::find(frames.begin(), frames.end(), frame) != frames.end();
}

} // namespace

EventBridge::EventBridge() : m_notifier(EventDescriptor(), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &EventBridge::Serve);
    SetMessagePump(&EventBridge::DeliverOneEvent, this);
}

EventBridge::~EventBridge() {
    SetMessagePump(nullptr, nullptr);
}

bool EventBridge::DeliverOneEvent(void* self) {
    return !static_cast<EventBridge*>(self)->m_inTask &&
           QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
}

// The notifier is off meanwhile: inside a pass the library serves itself. Quality passes wait for tasks, windows that
// want to be painted do not.
void EventBridge::Serve() {
    m_serving = true;
    m_notifier.setEnabled(false);
    RenderFrame* const next = Quorvex::s_jobFast.empty() ? nullptr : Quorvex::s_jobFast.front();
    std::list<RenderFrame*> held;
    if (!m_tasks.empty() || !m_attempts.empty()) {
        held.swap(Quorvex::s_jobQuality);
    }
    if (next != nullptr) {
        emit AboutToDraw(next, false);
    } else if (!Quorvex::s_jobQuality.empty()) {
        emit AboutToDraw(Quorvex::s_jobQuality.front(), true);
    }
    if (!Protect([] { ProcessEvents(); }) && next == nullptr && !Quorvex::s_jobQuality.empty()) {
        Quorvex::s_jobQuality.pop_front(); // it would throw again
    }
    for (RenderFrame* frame : held) {
        if (IsIn(Quorvex::s_vRenderFrames, frame) && !IsIn(Quorvex::s_jobQuality, frame)) {
            Quorvex::s_jobQuality.push_back(frame);
        }
    }
    m_notifier.setEnabled(true);
    m_serving = false;
    if (next != nullptr && !IsIn(Quorvex::s_jobFast, next) && IsIn(Quorvex::s_jobQuality, next)) {
        emit FastPassDrawn(next);
    }
    RunTasks();
}

void EventBridge::WhenIdle(QObject* context, std::function<void()> task) {
    m_tasks.push_back({context, std::move(task)});
    EndPass();
}

void EventBridge::WhenStill(QObject* context, std::function<bool()> attempt) {
    m_attempts.push_back({context, std::move(attempt)});
    EndPass();
}

void EventBridge::EndPass() {
    if (RenderFrame* const busy = FrameOfPass()) {
        busy->Render(); // ends it, and has it made again
    }
    QMetaObject::invokeMethod(this, &EventBridge::RunTasks, Qt::QueuedConnection);
}

bool EventBridge::Protect(const std::function<void()>& run) {
    try {
        run();
        return true;
    } catch (const std::exception& error) {
        emit Failed(QString::fromLocal8Bit(error.what()));
        return false;
    }
}

bool EventBridge::CanAttempt() const {
    return !m_attempts.empty() && Quorvex::s_jobFast.empty();
}

// One at a time: between them the event loop has its turn.
void EventBridge::RunTasks() {
    if (m_serving || m_inTask || m_inAttempt || FrameOfPass() != nullptr) {
        return;
    }
    if (!m_tasks.empty()) {
        RunTask();
    } else if (CanAttempt()) {
        MakeAttempt();
    }
    if (!m_tasks.empty() || CanAttempt()) {
        QMetaObject::invokeMethod(this, &EventBridge::RunTasks, Qt::QueuedConnection);
    }
}

void EventBridge::RunTask() {
    const auto task = std::move(m_tasks.front());
    m_tasks.pop_front();
    if (task.context != nullptr) {
        const QScopedValueRollback inTask(m_inTask, true);
        Protect(task.run);
    }
}

void EventBridge::MakeAttempt() {
    auto attempt = std::move(m_attempts.front());
    m_attempts.pop_front();
    if (attempt.context == nullptr) {
        return;
    }
    const QScopedValueRollback inAttempt(m_inAttempt, true);
    m_notifier.setEnabled(false);
    bool done = true;
    Protect([&] { done = attempt.run(); });
    m_notifier.setEnabled(true);
    if (!done) {
        m_attempts.push_front(std::move(attempt));
    }
}

} // namespace KOVA::Quorvex::viewer
