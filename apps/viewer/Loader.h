#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <QObject>
#include <QTimer>

#include <Quorvex/core/ReadProgress.h>

#include "ScenePart.h"

namespace KOVA::Quorvex::viewer {

class EventBridge;

// Reads files one after the other on a thread of its own, and brings what was read to the graphics card in pieces,
// between other events. Signals come on the thread of the object.
class Loader : public QObject {
    Q_OBJECT

public:
    // sink gets what was read and uploaded, outside passes.
    Loader(EventBridge& bridge, std::function<void(std::unique_ptr<ScenePart>)> sink);
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;
    ~Loader() override; // cancels what is under way

    void Load(const QStringList& paths);
    void Cancel(); // all that waits
    bool IsBusy() const { return !m_undelivered.empty(); }

signals:
    void Progress(const QString& name, double fraction); // of all that was asked for since it was idle
    void Failed(const QString& path, const QString& reason);
    void Finished(); // nothing waits any more

private:
    struct Job {
        std::string path;
        ReadProgress progress;
        std::unique_ptr<ScenePart> part;
        std::string failure;
        bool read = false; // with what success ever
        double uploaded = 0.0;
    };

    void Work();
    void Deliver();
    void UploadFurther();
    void EndFirst();
    void ReportProgress();

    EventBridge& m_bridge;
    std::function<void(std::unique_ptr<ScenePart>)> m_sink;
    std::mutex m_mutex; // guards what the threads share: the jobs that wait and the wish to end
    std::condition_variable m_wake;
    std::deque<std::shared_ptr<Job>> m_jobs;
    bool m_quit = false;
    std::deque<std::shared_ptr<Job>> m_undelivered; // all that was asked for, in order
    std::size_t m_asked = 0;                        // since it was idle
    QTimer m_timer;
    std::thread m_thread; // last: it uses the others
};

} // namespace KOVA::Quorvex::viewer
