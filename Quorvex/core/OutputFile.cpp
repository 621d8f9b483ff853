#include <Quorvex/core/OutputFile.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>

#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex {

namespace fs = std::filesystem;

namespace {

// Where path ends after all symbolic links, also when there is no file yet; empty when it goes round in circles.
fs::path FollowLinks(fs::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks; ++i) {
        if (fs::symlink_status(path, error).type() != fs::file_type::symlink) {
            return path;
        }
        const fs::path next = fs::read_symlink(path, error);
        if (error) {
            return {};
        }
        path = path.parent_path() / next; // an absolute link replaces all of it
    }
    return {};
}

// Does not depend on the target's name, which may be as long as names can be.
std::string TemporaryName() {
    static std::atomic<std::uint64_t> s_counter = 0;
    const auto now = std::chrono::high_resolution_clock::now().time_since_epoch().count();
    const auto place = reinterpret_cast<std::uintptr_t>(&now);
    constexpr std::uint64_t scatter = 0x9E3779B97F4A7C15U;
    const std::uint64_t number = (static_cast<std::uint64_t>(now) ^ place) * scatter + ++s_counter;
    return ".quorvex-" + std::to_string(number) + ".tmp";
}

bool IsWritable(const fs::path& path) {
    std::FILE* const file = platform::OpenFile(path, "r+b");
    if (file != nullptr) {
        std::fclose(file);
    }
    return file != nullptr;
}

} // namespace

OutputFile::~OutputFile() {
    Discard();
}

bool OutputFile::Open(const char* path) {
    Discard();
    m_failed = false;
    m_target = path == nullptr ? fs::path() : FollowLinks(platform::PathOf(path));
    if (m_target.empty() || !OpenTarget()) {
        m_target.clear(); // nothing was touched, so nothing may be discarded
        return false;
    }
    m_buffer = std::make_unique<char[]>(s_bufferBytes);
    (void)std::setvbuf(m_file, m_buffer.get(), _IOFBF, s_bufferBytes);
    return true;
}

bool OutputFile::OpenTarget() {
    std::error_code error;
    const fs::file_status status = fs::status(m_target, error);
    const bool exists = fs::exists(status);
    m_regular = !exists || fs::is_regular_file(status);
    if (!m_regular) {
        return OpenDirectly();
    }
    if (exists && !IsWritable(m_target)) {
        return false;
    }
    if (!OpenTemporary(m_target.parent_path())) {
        return OpenDirectly();
    }
    if (exists) {
        fs::permissions(m_temporary, status.permissions(), error); // not every file system has them
    }
    return true;
}

bool OutputFile::OpenTemporary(const fs::path& directory) {
    constexpr int mostAttempts = 100;
    for (int i = 0; i < mostAttempts && m_file == nullptr; ++i) {
        m_temporary = directory / TemporaryName();
        m_file = platform::CreateNewFile(m_temporary);
        if (m_file == nullptr && errno != EEXIST) {
            break;
        }
    }
    if (m_file == nullptr) {
        m_temporary.clear();
    }
    return m_file != nullptr;
}

bool OutputFile::OpenDirectly() {
    m_file = platform::OpenFile(m_target, "wb");
    return m_file != nullptr;
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
    if (m_failed || !flushed) {
        Discard();
        return false;
    }
    const bool closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    std::error_code error;
    if (closed && !m_temporary.empty()) {
        fs::rename(m_temporary, m_target, error);
    }
    if (!closed || error) {
        Discard();
        return false;
    }
    m_temporary.clear();
    m_target.clear();
    return true;
}

void OutputFile::Discard() {
    if (m_file != nullptr) {
        std::fclose(m_file);
        m_file = nullptr;
    } else if (m_target.empty()) {
        return;
    }
    std::error_code error;
    if (!m_temporary.empty()) {
        fs::remove(m_temporary, error);
    } else if (m_regular) {
        fs::resize_file(m_target, 0, error);
    }
    m_temporary.clear();
    m_target.clear();
}

} // namespace KOVA::Quorvex
