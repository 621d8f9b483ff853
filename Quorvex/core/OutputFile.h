#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace KOVA::Quorvex {

// Writes a file so that its name stands for the whole of it or for what was there before, never for a part. The bytes
// go to a temporary file in the same directory, which takes over the name at the end. Symbolic links are followed; an
// existing file keeps its permissions and must be writable. Where that way is closed (devices and pipes; a directory
// in which no file can be made) the target is written directly, and emptied when the writing fails.
class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile(); // discards what was not committed
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // path is in the encoding of fopen. A file that is still open is discarded first.
    bool Open(const char* path);

    // False once a write has failed; so is the Commit that follows.
    bool Write(const void* data, std::size_t bytes);

    // Closes the file and gives it its name. False, and everything discarded, when anything failed since Open.
    bool Commit();

private:
    bool OpenTarget();
    bool OpenTemporary(const std::filesystem::path& directory);
    bool OpenDirectly();
    void Discard();

    static constexpr std::size_t s_bufferBytes = std::size_t{1} << 16; // callers write in small pieces, too
    std::unique_ptr<char[]> m_buffer;
    std::FILE* m_file = nullptr;
    bool m_failed = false;
    bool m_regular = false;            // the target is, or will be, a regular file
    std::filesystem::path m_target;    // behind all symbolic links; empty while no file is being written
    std::filesystem::path m_temporary; // empty when the target is written directly
};

} // namespace KOVA::Quorvex
