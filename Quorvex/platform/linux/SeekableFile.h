#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace KOVA::Quorvex::platform {

// A file that is written and whose parts are written again later.
class SeekableFile {
public:
    explicit SeekableFile(const std::filesystem::path& path); // makes it, or empties it
    ~SeekableFile();
    SeekableFile(const SeekableFile&) = delete;
    SeekableFile& operator=(const SeekableFile&) = delete;

    bool IsOpen() const { return m_file != nullptr; }

    // All false once something has failed, and when the file is not open.
    bool Write(const void* data, std::size_t bytes);
    bool Seek(std::int64_t position);
    bool Close();

    std::int64_t Position() const { return m_position; } // in bytes from the start
    std::int64_t Size() const { return m_size; }

private:
    std::FILE* m_file;
    std::int64_t m_position = 0;
    std::int64_t m_size = 0;
    bool m_failed = false;
};

} // namespace KOVA::Quorvex::platform
