#include <Quorvex/platform/HostCallbacks.h>

#include <Quorvex/platform/NativeWindow.h>

namespace KOVA::Quorvex {

namespace {

bool (*s_pump)(void*) = nullptr;
void* s_pumpUser = nullptr;
void (*s_warningHandler)(const char*, const char*, void*) = nullptr;
void* s_warningUser = nullptr;

} // namespace

bool platform::CallMessagePump() {
    return s_pump != nullptr && s_pump(s_pumpUser);
}

bool platform::CallWarningHandler(const char* caption, const char* text) {
    if (s_warningHandler == nullptr) {
        return false;
    }
    s_warningHandler(caption, text, s_warningUser);
    return true;
}

void SetMessagePump(bool (*pump)(void* user), void* user) {
    s_pump = pump;
    s_pumpUser = user;
}

void SetWarningHandler(void (*handler)(const char* caption, const char* text, void* user), void* user) {
    s_warningHandler = handler;
    s_warningUser = user;
}

} // namespace KOVA::Quorvex
