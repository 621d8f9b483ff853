#include "OffscreenSession.h"

#include <fmt/format.h>

#include <Quorvex/core/Facade.h>
#include <Quorvex/platform/NativeWindow.h>

#include "Failure.h"

namespace KOVA::Quorvex::cli {

namespace {

std::string s_warning; // the latest

// Warnings of the library explain a failure that follows; they must not become lines of their own.
void KeepWarning(const char* /*caption*/, const char* text, void* user) {
    *static_cast<std::string*>(user) = text;
}

std::string OneLine(std::string text) {
    for (char& c : text) {
        c = c == '\n' || c == '\r' ? ' ' : c;
    }
    return text;
}

} // namespace

OffscreenSession::OffscreenSession() {
    SetWarningHandler(&KeepWarning, &s_warning);

    // Pictures are drawn in frame-buffer objects of their own size; the window only carries the context.
    m_window = CreateOffscreenWindow(64, 64); // NOLINT(cppcoreguidelines-prefer-member-initializer): handler first
    if (m_window == nullptr || !Quorvex::Init(m_window)) {
        const std::string why = s_warning.empty() ? std::string() : ": " + OneLine(s_warning);
        if (m_window != nullptr) {
            ReleaseWindow(m_window);
        }
        throw Failure("OpenGL cannot be started on this system" + why);
    }
}

OffscreenSession::~OffscreenSession() {
    Quorvex::Release();
    ReleaseWindow(m_window);
}

} // namespace KOVA::Quorvex::cli
