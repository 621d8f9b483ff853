#include "ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <fmt/format.h>

#include "system/System.h"

namespace KOVA::Quorvex::cli {

ProgressBar::ProgressBar() : m_start(std::chrono::steady_clock::now()), m_terminal(StandardErrorIsTerminal()) {}

ProgressBar::~ProgressBar() {
    Wipe();
}

void ProgressBar::Show(double done, std::string_view what) {
    using namespace std::chrono_literals;
    if (!m_terminal || std::chrono::steady_clock::now() - m_start < 500ms) {
        return;
    }
    constexpr double width = 30.0;
    const auto filled = static_cast<std::size_t>(std::clamp(done, 0.0, 1.0) * width);
    const std::string bar = std::string(filled, '#') + std::string(static_cast<std::size_t>(width) - filled, '.');
    Wipe();
    fmt::print(stderr, "[{}] {:3.0f} %  {:.40}", bar, done * 100.0, what);
    std::fflush(stderr);
    m_shown = true;
}

void ProgressBar::Wipe() {
    if (m_shown) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
        m_shown = false;
    }
}

} // namespace KOVA::Quorvex::cli
