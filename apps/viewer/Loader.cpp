#include "Loader.h"

#include <exception>
#include <new>
#include <utility>

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <shared/RekFile.h>

#include "EventBridge.h"
#include "MeshPart.h"
#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr int c_reportMilliseconds = 50;

std::unique_ptr<ScenePart> Read(const std::string& path, ReadProgress& progress) {
    if (IsVolumeFile(path)) {
        return std::make_unique<VolumePart>(path, progress);
    }
    return std::make_unique<MeshPart>(path, progress);
}

} // namespace

Loader::Loader(EventBridge& bridge, std::function<void(std::unique_ptr<ScenePart>)> sink)
    : m_bridge(bridge), m_sink(std::move(sink)), m_thread(&Loader::Work, this) {
    m_timer.setInterval(c_reportMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &Loader::ReportProgress);
}

Loader::~Loader() {
    Cancel();
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void Loader::Load(const QStringList& paths) {
    m_asked = IsBusy() ? m_asked : 0;
    for (const QString& path : paths) {
        auto job = std::make_shared<Job>();
        job->path = QFile::encodeName(path).toStdString();
        m_undelivered.push_back(job);
        ++m_asked;
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_one();
    m_timer.start();
    ReportProgress();
}

// The jobs still come back, marked as cancelled.
void Loader::Cancel() {
    for (const auto& job : m_undelivered) {
        job->progress.Cancel();
    }
}

void Loader::Work() {
    for (;;) {
        std::shared_ptr<Job> job;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [this] { return m_quit || !m_jobs.empty(); });
            if (m_quit) {
                return;
            }
            job = m_jobs.front();
            m_jobs.pop_front();
        }
        try {
            if (!job->progress.IsCancelled()) {
                job->part = Read(job->path, job->progress);
            }
        } catch (const std::exception& error) {
            job->failure = error.what();
        }
        QMetaObject::invokeMethod(
            this,
            [this, job] {
                job->read = true;
                if (job == m_undelivered.front()) {
                    Deliver();
                }
            },
            Qt::QueuedConnection);
    }
}

// Those at the front that were read, up to the first that has to be uploaded.
void Loader::Deliver() {
    while (IsBusy() && m_undelivered.front()->read) {
        if (m_undelivered.front()->part) {
            m_bridge.WhenIdle(this, [this] { UploadFurther(); });
            return;
        }
        EndFirst();
    }
}

void Loader::UploadFurther() {
    Job& job = *m_undelivered.front();
    try {
        if (!job.progress.IsCancelled()) {
            job.uploaded = job.part->UploadFurther();
            if (job.uploaded < 1.0) {
                m_bridge.WhenIdle(this, [this] { UploadFurther(); });
                ReportProgress();
                return;
            }
            m_sink(std::move(job.part));
        }
    } catch (const std::bad_alloc&) {
        job.failure = job.path + " does not fit into the graphics card's memory";
    }
    EndFirst();
    Deliver();
}

void Loader::EndFirst() {
    const std::shared_ptr<Job> job = std::move(m_undelivered.front());
    m_undelivered.pop_front();
    if (!job->progress.IsCancelled() && !job->failure.empty()) {
        emit Failed(QFile::decodeName(job->path.c_str()), QString::fromLocal8Bit(job->failure));
    }
    if (!IsBusy()) {
        m_timer.stop();
        emit Finished();
    }
}

void Loader::ReportProgress() {
    if (IsBusy()) {
        const Job& job = *m_undelivered.front();
        const auto finished = static_cast<double>(m_asked - m_undelivered.size());
        const double first = (double{job.progress.GetFraction()} + job.uploaded) / 2.0;
        emit Progress(QFileInfo(QFile::decodeName(job.path.c_str())).fileName(),
                      (finished + first) / static_cast<double>(m_asked));
    }
}

} // namespace KOVA::Quorvex::viewer
