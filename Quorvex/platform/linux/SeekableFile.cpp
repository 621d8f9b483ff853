#include <Quorvex/platform/linux/SeekableFile.h>

#include <algorithm>

#include <sys/types.h>

#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex::platform {

static_assert(sizeof(off_t) == sizeof(std::int64_t), "files beyond 2 GiB need 64-bit offsets");

SeekableFile::SeekableFile(const std::filesystem::path& path) : m_file(OpenFile(path, "wb")) {}

SeekableFile::~SeekableFile() {
    Close();
}

bool SeekableFile::Write(const void* data, std::size_t bytes) {
    if (m_file == nullptr || m_failed) {
        return false;
    }
    m_failed = std::fwrite(data, 1, bytes, m_file) != bytes;
    m_position += static_cast<std::int64_t>(bytes);
    m_size = std::max(m_size, m_position);
    return !m_failed;
}

bool SeekableFile::Seek(std::int64_t position) {
    if (m_file == nullptr || m_failed) {
        return false;
    }
    m_failed = fseeko(m_file, position, SEEK_SET) != 0; // which writes what was waiting
    m_position = position;
    return !m_failed;
}

bool SeekableFile::Close() {
    if (m_file == nullptr) {
        return false;
    }
    const bool closed = std::fclose(m_file) == 0; // may be the first to learn that the disk is full
    m_file = nullptr;
    return closed && !m_failed;
}

} // namespace KOVA::Quorvex::platform
