#include "FileReason.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "Paths.h"

namespace KOVA::Quorvex::apps {

std::string ReasonOfSystem(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(PathOf(path), ignored)) {
        return "it is a folder";
    }
    errno = 0;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenFile(PathOf(path), "rb"), &std::fclose);
    return file != nullptr ? std::string() : std::strerror(errno);
}

} // namespace KOVA::Quorvex::apps
