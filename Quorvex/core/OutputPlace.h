#pragma once

#include <filesystem>

namespace KOVA::Quorvex {

// Where a file is written so that its name stands for the whole of it or for what was there before, never for a part:
// under a temporary name in the same directory, which takes over the name at the end. Symbolic links are followed; an
// existing file keeps its permissions and must be writable. Where that way is closed (devices and pipes; a directory in
// which no file can be made) the target is written directly, and emptied when it is discarded.
class OutputPlace {
public:
    OutputPlace() = default;
    ~OutputPlace(); // discards what was not committed
    OutputPlace(const OutputPlace&) = delete;
    OutputPlace& operator=(const OutputPlace&) = delete;

    // Makes an empty file where there was none. path is in the encoding of fopen; ending is that of the temporary name.
    // False, and nothing touched, when there is nowhere to write. Discards the place before.
    bool Choose(const char* path, const char* ending);

    // What has to be opened for writing; empty when nothing is chosen.
    const std::filesystem::path& Path() const { return m_temporary.empty() ? m_target : m_temporary; }

    // The file, whole and closed, takes its name. False, and everything discarded, when it cannot.
    bool Commit();

    // The file, closed, is of no use.
    void Discard();

private:
    bool MakeTemporary(const std::filesystem::path& directory, const char* ending);

    bool m_regular = false;            // the target is, or will be, a regular file
    std::filesystem::path m_target;    // behind all symbolic links; empty while there is none
    std::filesystem::path m_temporary; // empty when the target is written directly
};

} // namespace KOVA::Quorvex
