#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include <Quorvex/core/ReadProgress.h>

// Seam: reading files at positions beyond 2 GiB, from several threads at once, and making files that are new for sure.

namespace KOVA::Quorvex::platform {

class InputFile {
public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // path is in the encoding of the C library's fopen. Opening a directory succeeds where fopen's would, and reading
    // it then fails. A pipe is not waited for.
    bool Open(const char* path);
    void Close();

    // Length in bytes when the file was opened; -1 when it is not a regular file and so has no length to trust.
    std::int64_t Size() const { return m_size; }

    // Reads up to count bytes at offset and returns how many there were: fewer only at the end of the file or on a
    // read error. May be called from several threads at once.
    std::size_t ReadAt(std::int64_t offset, void* buffer, std::size_t count) const {
        if (m_progress == nullptr) {
            return ReadBytes(offset, buffer, count);
        }
        if (m_progress->IsCancelled()) {
            return 0;
        }
        const std::size_t got = ReadBytes(offset, buffer, count);
        m_progress->Advance(static_cast<std::int64_t>(got));
        return got;
    }

    // Tells of the bytes that ReadAt delivers, and lets it deliver none once that is cancelled. Null for none. For a
    // file that is open and will be read as a whole, normally once.
    void Report(ReadProgress* progress) {
        m_progress = progress;
        WillBeRead(1);
    }
    void WillBeRead(int times) const {
        if (m_progress != nullptr) {
            m_progress->Begin(m_size * times);
        }
    }

private:
    std::size_t ReadBytes(std::int64_t offset, void* buffer, std::size_t count) const;

    std::intptr_t m_handle = -1;
    std::int64_t m_size = -1;
    ReadProgress* m_progress = nullptr;
};

// The path that fopen would take this name for: the C++ library alone may read other characters from the same bytes.
std::filesystem::path PathOf(const char* name);

// fopen for a path.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

// Opens a file for binary writing that this call makes. Null, with the reason in errno, when there is something of that
// name already (EEXIST) or no file can be made.
std::FILE* CreateNewFile(const std::filesystem::path& path);

} // namespace KOVA::Quorvex::platform
