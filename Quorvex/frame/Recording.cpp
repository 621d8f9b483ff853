#include <Quorvex/frame/Recording.h>

#include <system_error>
#include <utility>

namespace KOVA::Quorvex {

using platform::VideoResult;

namespace {

// One is drawn while one is compressed; a few more even out what differs from picture to picture.
constexpr std::size_t MAX_WAITING = 3;

} // namespace

Recording::Recording(unsigned int width, unsigned int height) : m_width(width), m_height(height) {}

std::shared_ptr<Recording> Recording::Open(const char* path, unsigned int width, unsigned int height, HWND window,
                                           std::shared_ptr<const platform::CodecOptions>& options) {
    std::shared_ptr<Recording> recording(new Recording(width, height));
    if (!recording->Prepare(path, window, options)) {
        recording->Discard();
        return nullptr;
    }
    recording->StartWriter();
    return recording;
}

bool Recording::Prepare(const char* path, HWND window, std::shared_ptr<const platform::CodecOptions>& options) {
    if (!m_place.Choose(path, ".avi")) { // an ending by which systems know what to make
        return false;
    }
    m_file = platform::OpenVideoFile(m_place.Path(), m_width, m_height);
    if (m_file == nullptr) {
        return false;
    }
    if (options == nullptr) {
        options = m_file->ChooseCodec(window);
    }
    return options != nullptr && m_file->Start(*options);
}

Recording::~Recording() {
    Finish();
}

void Recording::StartWriter() {
    try {
        m_writer = std::thread([this] { WriteWaiting(); });
    } catch (const std::system_error&) { // written as they come
    }
}

void Recording::StopWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
    if (m_writer.joinable()) {
        m_writer.join();
    }
}

bool Recording::Add(std::unique_ptr<unsigned char[]> rgba) {
    std::unique_lock lock(m_mutex);
    if (!m_writer.joinable()) {
        if (m_result == VideoResult::Written && m_file != nullptr) {
            m_result = m_file->Write(rgba.get());
        }
        return m_result == VideoResult::Written && m_file != nullptr;
    }
    m_changed.wait(lock, [this] { return m_waiting.size() < MAX_WAITING || m_result != VideoResult::Written; });
    if (m_result != VideoResult::Written) {
        return false;
    }
    m_waiting.push_back(std::move(rgba));
    lock.unlock();
    m_changed.notify_all();
    return true;
}

// The writer's thread. What waits is written before the end; after a failure it is thrown away.
void Recording::WriteWaiting() noexcept {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_ended; });
        if (m_waiting.empty()) {
            return;
        }
        const std::unique_ptr<unsigned char[]> picture = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (m_result != VideoResult::Written) {
            continue;
        }
        lock.unlock();
        m_changed.notify_all(); // there is room again
        const VideoResult result = m_file->Write(picture.get());
        lock.lock();
        if (result != VideoResult::Written) {
            m_result = result;
            m_changed.notify_all();
        }
    }
}

bool Recording::Finish() {
    StopWriter();
    if (m_file != nullptr) {
        const bool closed = m_file->Close();
        m_file.reset();
        m_finished = closed && m_result != VideoResult::Failed && m_place.Commit();
    }
    m_place.Discard(); // when it could not be committed
    return m_finished;
}

void Recording::Discard() {
    {
        const std::lock_guard lock(m_mutex);
        m_result = VideoResult::Failed; // what waits need not be written
    }
    StopWriter();
    m_file.reset();
    m_place.Discard();
    m_finished = false;
}

} // namespace KOVA::Quorvex
