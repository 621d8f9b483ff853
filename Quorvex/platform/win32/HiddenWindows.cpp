#include <Quorvex/platform/win32/HiddenWindows.h>

#include <cstring>

namespace KOVA::Quorvex::platform {

namespace {

constexpr char CLASS_NAME[] = "QuorvexHiddenWindow";

// The program, or the library that this code was linked into: whoever registers the class has to stay loaded.
HINSTANCE OwnModule() {
    static const char s_here = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, &s_here,
                       &module);
    return module;
}

bool RegisterHiddenClass() {
    WNDCLASSA description{};
    description.style = CS_OWNDC;
    description.lpfnWndProc = DefWindowProcA;
    description.hInstance = OwnModule();
    description.lpszClassName = CLASS_NAME;
    return RegisterClassA(&description) != 0;
}

} // namespace

HWND CreateHiddenWindow(int width, int height) {
    static const bool s_registered = RegisterHiddenClass();
    return s_registered ? CreateWindowExA(0, CLASS_NAME, "", WS_POPUP | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, 0, width,
                                          height, nullptr, nullptr, OwnModule(), nullptr)
                        : nullptr;
}

bool IsHiddenWindow(HWND window) {
    char name[sizeof CLASS_NAME + 1];
    return window != nullptr && GetClassNameA(window, name, sizeof name) != 0 && std::strcmp(name, CLASS_NAME) == 0;
}

} // namespace KOVA::Quorvex::platform
