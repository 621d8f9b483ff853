#include <Quorvex/platform/File.h>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KOVA::Quorvex::platform {

static_assert(sizeof(off_t) == sizeof(std::int64_t), "files beyond 2 GiB need 64-bit offsets");

InputFile::~InputFile() {
    Close();
}

bool InputFile::Open(const char* path) {
    Close();
    if (path == nullptr) {
        return false;
    }
    // Without waiting: opening a pipe that nobody writes to would never return. Regular files do not care.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    m_handle = descriptor;
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        m_size = status.st_size;
    }
    return true;
}

void InputFile::Close() {
    if (m_handle >= 0) {
        close(static_cast<int>(m_handle));
    }
    m_handle = -1;
    m_size = -1;
}

std::size_t InputFile::ReadBytes(std::int64_t offset, void* buffer, std::size_t count) const {
    auto* target = static_cast<char*>(buffer);
    std::size_t done = 0;
    while (done < count) {
        // One call transfers less than 2 GiB, whatever it is asked for.
        const std::size_t part = std::min<std::size_t>(count - done, std::size_t{1} << 30);
        const ssize_t got = pread(static_cast<int>(m_handle), target + done, part,
                                  static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::filesystem::path PathOf(const char* name) {
    return name;
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

std::FILE* CreateNewFile(const std::filesystem::path& path) {
    constexpr mode_t readWriteForAll = 0666; // less what the process masks
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readWriteForAll);
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* const file = fdopen(descriptor, "wb");
    if (file == nullptr) {
        const int reason = errno;
        close(descriptor);
        unlink(path.c_str());
        errno = reason;
    }
    return file;
}

} // namespace KOVA::Quorvex::platform
