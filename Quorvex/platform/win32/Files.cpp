#include <Quorvex/platform/File.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

namespace KOVA::Quorvex::platform {

namespace {

HANDLE AsHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

} // namespace

InputFile::~InputFile() {
    Close();
}

bool InputFile::Open(const char* path) {
    Close();
    if (path == nullptr) {
        return false;
    }
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE; // as fopen does
    const HANDLE handle =
        CreateFileA(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    m_handle = reinterpret_cast<std::intptr_t>(handle);
    LARGE_INTEGER size;
    if (GetFileType(handle) == FILE_TYPE_DISK && GetFileSizeEx(handle, &size) != 0) {
        m_size = size.QuadPart;
    }
    return true;
}

void InputFile::Close() {
    if (m_handle != -1) {
        CloseHandle(AsHandle(m_handle));
    }
    m_handle = -1;
    m_size = -1;
}

std::size_t InputFile::ReadBytes(std::int64_t offset, void* buffer, std::size_t count) const {
    auto* target = static_cast<char*>(buffer);
    std::size_t done = 0;
    while (done < count) {
        // The position in the call, not the handle's own: other threads use the same handle.
        const auto position = static_cast<std::uint64_t>(offset) + done;
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(position & 0xFFFFFFFFU);
        place.OffsetHigh = static_cast<DWORD>(position >> 32);
        const auto part = static_cast<DWORD>(std::min<std::size_t>(count - done, std::size_t{1} << 30));
        DWORD got = 0;
        if (ReadFile(AsHandle(m_handle), target + done, part, &got, &place) == 0 || got == 0) {
            break;
        }
        done += got;
    }
    return done;
}

std::filesystem::path PathOf(const char* name) {
    const int bytes = static_cast<int>(std::strlen(name));
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, name, bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, name, bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
}

std::FILE* CreateNewFile(const std::filesystem::path& path) {
    const int descriptor =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* const file = _fdopen(descriptor, "wb");
    if (file == nullptr) {
        const int reason = errno;
        _close(descriptor);
        _wunlink(path.c_str());
        errno = reason;
    }
    return file;
}

} // namespace KOVA::Quorvex::platform
