#include <Quorvex/core/OutputFile.h>

#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex {

OutputFile::~OutputFile() {
    Discard();
}

bool OutputFile::Open(const char* path) {
    Discard();
    m_failed = false;
    if (!m_place.Choose(path, ".tmp")) {
        return false;
    }
    m_file = platform::OpenFile(m_place.Path(), "wb");
    if (m_file == nullptr) {
        m_place.Discard();
        return false;
    }
    m_buffer = std::make_unique<char[]>(s_bufferBytes);
    (void)std::setvbuf(m_file, m_buffer.get(), _IOFBF, s_bufferBytes);
    return true;
}

bool OutputFile::Write(const void* data, std::size_t bytes) {
    if (m_file == nullptr || m_failed) {
        return false;
    }
    m_failed = std::fwrite(data, 1, bytes, m_file) != bytes;
    return !m_failed;
}

bool OutputFile::Commit() {
    if (m_file == nullptr) {
        return false;
    }
    // Closing writes the rest, and may be the first to learn that the disk is full.
    const bool flushed = std::fflush(m_file) == 0;
    const bool closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    if (m_failed || !flushed || !closed) {
        m_place.Discard();
        return false;
    }
    return m_place.Commit();
}

void OutputFile::Discard() {
    if (m_file != nullptr) {
        std::fclose(m_file);
        m_file = nullptr;
    }
    m_place.Discard();
}

} // namespace KOVA::Quorvex
