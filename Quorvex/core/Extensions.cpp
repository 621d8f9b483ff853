#include <Quorvex/core/Extensions.h>

#include <algorithm>
#include <cstdio>

#include <Quorvex/core/ExtensionTokens.h>
#include <Quorvex/core/OpenGL.h>

namespace KOVA::Quorvex {

namespace {

// Takes the token up to the next blank off the front of the list, and the blank with it.
std::string_view TakeToken(std::string_view& list) {
    const std::size_t length = std::min(list.find(' '), list.size());
    const std::string_view token = list.substr(0, length);
    list.remove_prefix(std::min(length + 1, list.size()));
    return token;
}

bool HasToken(std::string_view list, std::string_view name) {
    while (!list.empty()) {
        if (TakeToken(list) == name) {
            return true;
        }
    }
    return false;
}

} // namespace

bool IsExtensionToken(std::string_view extensions, std::string_view name) {
    return !name.empty() && name.find(' ') == std::string_view::npos && HasToken(extensions, name);
}

bool AreExtensionTokens(std::string_view extensions, std::string_view names) {
    while (!names.empty()) {
        if (!HasToken(extensions, TakeToken(names))) {
            return false;
        }
    }
    return true;
}

int MajorVersion(const char* version) {
    int major = 0;
    int minor = 0;
    if (version != nullptr) {
        static_cast<void>(std::sscanf(version, "%d.%d", &major, &minor));
    }
    return major;
}

bool isExtensionSupported(const char* name) {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return extensions != nullptr && IsExtensionToken(extensions, name);
}

bool isVersionNewerThan(int major, int /*minor*/) {
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    CHECK_GL_ERROR();
    return MajorVersion(version) >= major;
}

void CHECK_GL_ERROR() {
    static_cast<void>(glGetError());
}

} // namespace KOVA::Quorvex
