#include "VolumeFile.h"

#include <fmt/format.h>

#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex::cli {

namespace {

// Takes the library's warnings while it lives, so that failures stay one line.
class CollectedWarnings {
public:
    CollectedWarnings() {
        SetWarningHandler(
            [](const char* /*caption*/, const char* text, void* user) { *static_cast<std::string*>(user) = text; },
            &m_text);
    }
    CollectedWarnings(const CollectedWarnings&) = delete;
    CollectedWarnings& operator=(const CollectedWarnings&) = delete;
    ~CollectedWarnings() { SetWarningHandler(nullptr, nullptr); }

    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

} // namespace

Volume ReadVolume(const std::string& path) {
    const CollectedWarnings warnings;
    Volume volume = ReadRek(path);
    if (!warnings.Text().empty()) {
        fmt::print(stderr, "quorvex: '{}': {}\n", path, warnings.Text());
    }
    return volume;
}

} // namespace KOVA::Quorvex::cli
