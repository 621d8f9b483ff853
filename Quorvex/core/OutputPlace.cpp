#include <Quorvex/core/OutputPlace.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
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
std::string TemporaryName(const char* ending) {
    static std::atomic<std::uint64_t> s_counter = 0;
    const auto now = std::chrono::high_resolution_clock::now().time_since_epoch().count();
    const auto place = reinterpret_cast<std::uintptr_t>(&now);
    constexpr std::uint64_t scatter = 0x9E3779B97F4A7C15U;
    const std::uint64_t number = (static_cast<std::uint64_t>(now) ^ place) * scatter + ++s_counter;
    return ".quorvex-" + std::to_string(number) + ending;
}

bool MakeFile(const fs::path& path) {
    std::FILE* const file = platform::CreateNewFile(path);
    if (file != nullptr) {
        std::fclose(file);
    }
    return file != nullptr;
}

bool IsWritable(const fs::path& path) {
    std::FILE* const file = platform::OpenFile(path, "r+b");
    if (file != nullptr) {
        std::fclose(file);
    }
    return file != nullptr;
}

} // namespace

OutputPlace::~OutputPlace() {
    Discard();
}

bool OutputPlace::Choose(const char* path, const char* ending) {
    Discard();
    const fs::path target = path == nullptr ? fs::path() : FollowLinks(platform::PathOf(path));
    if (target.empty()) {
        return false;
    }
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    const bool exists = fs::exists(status);
    m_regular = !exists || fs::is_regular_file(status);
    if (m_regular) {
        if (exists && !IsWritable(target)) {
            return false;
        }
        if (!MakeTemporary(target.parent_path(), ending) && !exists && !MakeFile(target)) {
            return false;
        }
        if (exists && !m_temporary.empty()) {
            fs::permissions(m_temporary, status.permissions(), error); // not every file system has them
        }
    }
    m_target = target;
    return true;
}

bool OutputPlace::MakeTemporary(const fs::path& directory, const char* ending) {
    constexpr int mostAttempts = 100;
    for (int i = 0; i < mostAttempts; ++i) {
        m_temporary = directory / TemporaryName(ending);
        if (MakeFile(m_temporary)) {
            return true;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    m_temporary.clear();
    return false;
}

bool OutputPlace::Commit() {
    std::error_code error;
    if (m_target.empty()) {
        return false;
    }
    if (!m_temporary.empty()) {
        fs::rename(m_temporary, m_target, error);
    }
    if (error) {
        Discard();
        return false;
    }
    m_temporary.clear();
    m_target.clear();
    return true;
}

void OutputPlace::Discard() {
    std::error_code error;
    if (!m_temporary.empty()) {
        fs::remove(m_temporary, error);
    } else if (!m_target.empty() && m_regular) {
        fs::resize_file(m_target, 0, error);
    }
    m_temporary.clear();
    m_target.clear();
}

} // namespace KOVA::Quorvex
