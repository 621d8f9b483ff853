#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

#include <Quorvex/core/OutputPlace.h>

namespace KOVA::Quorvex {

// Writes a file so that its name stands for the whole of it or for what was there before, never for a part: see
// OutputPlace.
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
    void Discard();

    static constexpr std::size_t s_bufferBytes = std::size_t{1} << 16; // callers write in small pieces, too
    std::unique_ptr<char[]> m_buffer;
    std::FILE* m_file = nullptr;
    bool m_failed = false;
    OutputPlace m_place;
};

} // namespace KOVA::Quorvex
