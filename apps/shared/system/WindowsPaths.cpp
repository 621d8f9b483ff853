#include "../Paths.h"

#include <cstring>

#include <windows.h>

namespace KOVA::Quorvex::apps {

std::filesystem::path PathOf(const std::string& name) {
    const int bytes = static_cast<int>(name.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, name.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, name.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
}

} // namespace KOVA::Quorvex::apps
