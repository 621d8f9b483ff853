#pragma once

#include <deque>
#include <functional>

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>

namespace KOVA::Quorvex {
class RenderFrame;
}

namespace KOVA::Quorvex::viewer {

// The library inside Qt's event loop: its events are delivered when its descriptor is readable, and while it draws a
// quality pass Qt's events are delivered from inside that pass. After Quorvex::Init, on its thread.
class EventBridge : public QObject {
    Q_OBJECT

public:
    EventBridge();
    EventBridge(const EventBridge&) = delete;
    EventBridge& operator=(const EventBridge&) = delete;
    ~EventBridge() override;

    // Any handler of an event may run inside a pass. What must not (what deletes frames, captures, blocks) goes here:
    // it runs as soon as the event loop is reached and no pass is under way; one that is ends at once, and is made
    // again. It is dropped when its context is gone by then. While the task runs no other event is handled, not even
    // inside passes that it draws. One that takes long does a piece and asks for the next: other events and fast passes
    // come in between, quality passes when no task waits any more.
    void WhenIdle(QObject* context, std::function<void()> task);

    // The same for what draws in full quality and may take seconds: other events are handled meanwhile, and one that
    // asks for a fast pass ends it. The attempt tells whether it is done with; if not, it is made again as soon as
    // nobody asks for fast passes and no task waits.
    void WhenStill(QObject* context, std::function<bool()> attempt);

    bool HasTasks() const { return m_inTask || !m_tasks.empty() || m_inAttempt || !m_attempts.empty(); }

signals:
    // The next tick may draw a pass of the frame: its settings can be made to suit.
    void AboutToDraw(KOVA::Quorvex::RenderFrame* frame, bool quality);

    // A fast pass of the frame was drawn and shown.
    void FastPassDrawn(KOVA::Quorvex::RenderFrame* frame);

    // A pass, task or attempt threw: that must not cross Qt's event loop. What it was about is given up.
    void Failed(const QString& reason);

private:
    template <class Run> struct Task {
        QPointer<QObject> context;
        Run run;
    };

    static bool DeliverOneEvent(void* self);
    void Serve();
    void RunTasks();
    void RunTask();
    void MakeAttempt();
    bool CanAttempt() const;
    void EndPass();
    bool Protect(const std::function<void()>& run); // false when it threw

    QSocketNotifier m_notifier;
    std::deque<Task<std::function<void()>>> m_tasks;
    std::deque<Task<std::function<bool()>>> m_attempts;
    bool m_serving = false; // these three: further up the stack
    bool m_inTask = false;
    bool m_inAttempt = false;
};

} // namespace KOVA::Quorvex::viewer
