#include <Quorvex/core/GlThread.h>

#include <atomic>
#include <thread>

namespace KOVA::Quorvex {

namespace {
std::atomic<std::thread::id> s_glThread;
} // namespace

void SetGlThread() {
    s_glThread = std::this_thread::get_id();
}

bool IsGlThread() {
    const std::thread::id expected = s_glThread;
    return expected == std::thread::id() || expected == std::this_thread::get_id();
}

} // namespace KOVA::Quorvex
