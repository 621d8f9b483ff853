#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

// A file in memory that has a name.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* bytes, std::size_t count) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
        if (write(m_descriptor, bytes, count) != static_cast<ssize_t>(count)) {
            std::abort();
        }
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

inline void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}
