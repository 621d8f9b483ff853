#pragma once

#include <chrono>
#include <string_view>

namespace KOVA::Quorvex::cli {

// One line on standard error that shows how far a long job is, only when standard error is a terminal and the job has
// already taken a while. The line is wiped when the object goes.
class ProgressBar {
public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // done from 0 to 1; what is the step that begins now.
    void Show(double done, std::string_view what);

private:
    void Wipe();

    std::chrono::steady_clock::time_point m_start;
    bool m_terminal;
    bool m_shown = false;
};

} // namespace KOVA::Quorvex::cli
