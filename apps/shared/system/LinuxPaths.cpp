#include "../Paths.h"

namespace KOVA::Quorvex::apps {

std::filesystem::path PathOf(const std::string& name) {
    return name;
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

} // namespace KOVA::Quorvex::apps
