#include "PictureFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "Failure.h"
#include "system/System.h"

namespace fs = std::filesystem;

namespace KOVA::Quorvex::cli {

namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
    throw Failure(fmt::format("cannot write '{}': {}", path, std::strerror(error != 0 ? error : EIO)));
}

// The file that a picture is written to. A regular file is written under a temporary name beside it and takes its place
// in Commit; anything else that already stands under the name (a device, a pipe) is written to directly.
class Output {
public:
    explicit Output(const std::string& path) : m_path(path) {
        std::error_code ignored;
        const fs::path target = PathOf(path);
        const fs::file_status status = fs::status(target, ignored);
        if (fs::exists(status) && !fs::is_regular_file(status)) {
            m_file = OpenFile(target, "wb");
        } else {
            // A link stays a link: the file behind it is replaced.
            m_target = fs::exists(status) ? fs::canonical(target, ignored) : target;
            OpenTemporary();
        }
        if (m_file == nullptr) {
            Fail(path, errno);
        }
    }

    ~Output() {
        if (m_file != nullptr) {
            std::fclose(m_file);
        }
        if (!m_temporary.empty()) {
            std::error_code ignored;
            fs::remove(m_temporary, ignored);
        }
    }

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    std::FILE* File() const { return m_file; }

    void Commit() {
        std::FILE* file = m_file;
        m_file = nullptr;
        errno = 0;
        if (std::fclose(file) != 0) {
            Fail(m_path, errno);
        }
        if (!m_temporary.empty()) {
            std::error_code error;
            fs::rename(m_temporary, m_target, error);
            if (error) {
                Fail(m_path, error.value());
            }
            m_temporary.clear();
        }
    }

private:
    void OpenTemporary() {
        for (int i = 0; i < 100 && m_file == nullptr; ++i) {
            const fs::path name = fs::path(m_target).concat(fmt::format(".{}.part", i));
            m_file = CreateNewFile(name); // never another program's file
            if (m_file != nullptr) {
                m_temporary = name;
            } else if (errno != EEXIST) {
                return;
            }
        }
    }

    std::string m_path;
    fs::path m_target;
    fs::path m_temporary;
    std::FILE* m_file = nullptr;
};

} // namespace

void CheckWritable(const std::string& path) {
    std::error_code ignored;
    const fs::path target = PathOf(path);
    const fs::file_status status = fs::status(target, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
        return; // a device or a pipe: opening it may already have an effect
    }
    const bool existed = fs::exists(fs::symlink_status(target, ignored));
    errno = 0;
    std::FILE* file = OpenFile(target, "ab");
    if (file == nullptr) {
        Fail(path, errno);
    }
    std::fclose(file);
    if (!existed) {
        fs::remove(target, ignored);
    }
}

void WritePng(const std::string& path, PictureSize size, const std::vector<unsigned char>& pixels) {
    Output output(path);
    errno = 0;
    if (!EncodePng(output.File(), size.width, size.height, pixels) || std::fflush(output.File()) != 0) {
        Fail(path, errno);
    }
    output.Commit();
}

} // namespace KOVA::Quorvex::cli
