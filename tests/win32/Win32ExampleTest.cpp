// The example host as a process of its own, driven by the messages that a person's hands cause.

#include <set>

#include "HostWindow.h"

namespace KOVA::Quorvex::test {
namespace {

class Example {
public:
    explicit Example(const std::string& arguments) {
        std::string command = "\"" QUORVEX_EXAMPLE_WIN32 "\" " + arguments;
        STARTUPINFOA start{};
        start.cb = sizeof start;
        EXPECT_NE(
            CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &m_process),
            0);
    }
    Example(const Example&) = delete;
    Example& operator=(const Example&) = delete;
    ~Example() {
        TerminateProcess(m_process.hProcess, 99); // nothing when it has ended
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }

    std::vector<HWND> Windows() const {
        Search search{m_process.dwProcessId, {}};
        EnumWindows(
            [](HWND window, LPARAM parameter) -> BOOL {
                auto& s = *reinterpret_cast<Search*>(parameter);
                DWORD process = 0;
                char name[32] = {};
                GetWindowThreadProcessId(window, &process);
                GetClassNameA(window, name, sizeof name);
                if (process == s.process && IsWindowVisible(window) != 0 && std::string(name) == "QuorvexExample") {
                    s.windows.push_back(window);
                }
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&search));
        return search.windows;
    }
    int ExitCode() const {
        DWORD code = STILL_ACTIVE;
        WaitForSingleObject(m_process.hProcess, 20000);
        GetExitCodeProcess(m_process.hProcess, &code);
        return static_cast<int>(code);
    }

private:
    struct Search {
        DWORD process;
        std::vector<HWND> windows;
    };
    PROCESS_INFORMATION m_process{};
};

// A grid of pixels of the client area.
std::vector<COLORREF> Look(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    const HDC deviceContext = GetDC(window);
    std::vector<COLORREF> pixels;
    for (int y = 8; y < client.bottom; y += 16) {
        for (int x = 8; x < client.right; x += 16) {
            pixels.push_back(GetPixel(deviceContext, x, y));
        }
    }
    ReleaseDC(window, deviceContext);
    return pixels;
}

std::size_t Colors(const std::vector<COLORREF>& pixels) {
    return std::set<COLORREF>(pixels.begin(), pixels.end()).size();
}

TEST(Win32Example, TurnsZoomsResizesAndEnds) {
    const Example example("--windows 2 \"" QUORVEX_SAMPLE "\"");
    ASSERT_TRUE(PumpUntil([&] { return example.Windows().size() == 2; }));
    const std::vector<HWND> windows = example.Windows();
    const HWND window = windows.front();
    const HWND other = windows.back();
    ASSERT_TRUE(PumpUntil([&] { return Colors(Look(window)) > 40 && Colors(Look(other)) > 40; })) << "part on gradient";
    const auto before = Look(window);
    const auto otherBefore = Look(other);

    PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(300, 200));
    PostMessageA(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(360, 230));
    PostMessageA(window, WM_LBUTTONUP, 0, MAKELPARAM(360, 230));
    EXPECT_TRUE(PumpUntil([&] { return Look(window) != before; }));
    EXPECT_EQ(Look(other), otherBefore) << "its camera is its own";

    const auto turned = Look(window);
    PostMessageA(window, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_TRUE(PumpUntil([&] { return Look(window) != turned; }));

    SetWindowPos(window, nullptr, 0, 0, 300, 200, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE(PumpUntil([&] { return Colors(Look(window)) > 20; }));
    PostMessageA(window, WM_CHAR, 'q', 1);
    EXPECT_EQ(example.ExitCode(), 0);
}

TEST(Win32Example, WrongUseAndBadFilesEndWithTheirCodes) {
    EXPECT_EQ(Example("--windows 0").ExitCode(), 2);
    EXPECT_EQ(Example("no-such-file.stl").ExitCode(), 1);
}

} // namespace
} // namespace KOVA::Quorvex::test
