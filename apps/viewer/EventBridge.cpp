#include "EventBridge.h"

#include <algorithm>
#include <utility>

#include <QAbstractEventDispatcher>

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

bool Waits(const std::list<RenderFrame*>& jobs, RenderFrame* frame) {
    return std::find(jobs.begin(), jobs.end(), frame) != jobs.end();
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

// The notifier is off meanwhile: inside a pass the library serves itself.
void EventBridge::Serve() {
    m_serving = true;
    m_notifier.setEnabled(false);
    RenderFrame* const next = Quorvex::s_jobFast.empty() ? nullptr : Quorvex::s_jobFast.front();
    if (next != nullptr) {
        emit AboutToDraw(next, false);
    } else if (!Quorvex::s_jobQuality.empty()) {
        emit AboutToDraw(Quorvex::s_jobQuality.front(), true);
    }
    ProcessEvents();
    m_notifier.setEnabled(true);
    m_serving = false;
    if (next != nullptr && !Waits(Quorvex::s_jobFast, next) && Waits(Quorvex::s_jobQuality, next)) {
        emit FastPassDrawn(next);
    }
    RunTasks();
}

void EventBridge::WhenIdle(QObject* context, std::function<void()> task) {
    m_tasks.push_back({context, std::move(task)});
    if (RenderFrame* const busy = FrameOfPass()) {
        busy->Render(); // ends it, and has it made again
    }
    QMetaObject::invokeMethod(this, &EventBridge::RunTasks, Qt::QueuedConnection);
}

void EventBridge::RunTasks() {
    while (!m_serving && !m_inTask && !m_tasks.empty() && FrameOfPass() == nullptr) {
        const Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        if (task.context != nullptr) {
            m_inTask = true;
            task.run();
            m_inTask = false;
        }
    }
}

} // namespace KOVA::Quorvex::viewer
