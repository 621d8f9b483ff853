// What only this system has: its pixel formats, message queue, dialogs and files.

#include <filesystem>
#include <fstream>
#include <thread>

#include <Quorvex/platform/File.h>
#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/WindowSystem.h>
#include <Quorvex/platform/win32/PixelFormats.h>

#include "HostWindow.h"

namespace KOVA::Quorvex::test {
namespace {

class Win32Platform : public GlTest {};

TEST_F(Win32Platform, FormatsAreAskedForAsHostsKnowThem) {
    platform::PixelFormat format;
    EXPECT_EQ(platform::DescribeFormat(format).dwFlags, 0x25U);
    format.swapExchange = true;
    const PIXELFORMATDESCRIPTOR asked = platform::DescribeFormat(format);
    EXPECT_EQ(asked.dwFlags, 0x225U);
    EXPECT_EQ(asked.nSize, 40);
    EXPECT_EQ(asked.nVersion, 1);
    EXPECT_EQ(asked.iPixelType, PFD_TYPE_RGBA);
    EXPECT_EQ(asked.cColorBits, 32);
    EXPECT_EQ(asked.cDepthBits, 24);
    EXPECT_EQ(asked.cStencilBits, 8);
    EXPECT_EQ(asked.cAlphaBits + asked.cAccumBits + asked.cAuxBuffers, 0);

    PIXELFORMATDESCRIPTOR got{};
    const HDC main = Library::GetDeviceContext();
    ASSERT_NE(DescribePixelFormat(main, GetPixelFormat(main), sizeof got, &got), 0);
    EXPECT_EQ(got.dwFlags & 0x25U, 0x25U);
    EXPECT_GE(got.cDepthBits, 24);
    EXPECT_GE(got.cStencilBits, 8);
    EXPECT_TRUE(platform::SetPixelFormat(main, format)) << "set once, it stays";
    EXPECT_FALSE(platform::SetPixelFormat(nullptr, format));
}

// A picture in memory has no format with two buffers.
TEST_F(Win32Platform, DeviceContextWithoutFormatIsRefused) {
    const HDC memory = CreateCompatibleDC(nullptr);
    View view;
    RenderFrame frame;
    EXPECT_FALSE(frame.Init(memory, &view));
    EXPECT_TRUE(Library::s_vRenderFrames.empty());
    EXPECT_EQ(platform::CreateContext(memory, nullptr), nullptr);
    DeleteDC(memory);
}

TEST_F(Win32Platform, QuitIsLeftForTheHostsLoop) {
    HostWindow window(20, 20);
    PostMessageA(window.Handle(), WM_APP, 7, 8);
    PostQuitMessage(42);
    PostMessageA(window.Handle(), WM_APP, 9, 10);
    for (int i = 0; i < 20; ++i) {
        ProcessEvents();
        platform::DispatchOneMessage();
    }
    EXPECT_EQ(HostWindow::CountOf(WM_APP), 2);
    MSG message;
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 42U);
}

int s_pumped = 0;

TEST_F(Win32Platform, BothTheQueueAndTheHostsCallbackGetTheirTurn) {
    HostWindow window(20, 20);
    SetMessagePump([](void* /*user*/) { return ++s_pumped > 0; }, nullptr); // always has something
    constexpr int posted = 10;
    for (int i = 0; i < posted; ++i) {
        PostMessageA(window.Handle(), WM_APP, 0, 0);
    }
    s_pumped = 0;
    for (int i = 0; i < 4 * posted; ++i) {
        EXPECT_TRUE(platform::DispatchOneMessage());
    }
    EXPECT_EQ(HostWindow::CountOf(WM_APP), posted);
    EXPECT_GE(s_pumped, posted);
}

std::string s_dialog;

// Runs in the dialog's own message loop.
void CALLBACK AnswerDialog(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
    const HWND dialog = FindWindowA("#32770", "Quorvex");
    if (dialog == nullptr) {
        return;
    }
    char text[200] = {};
    GetDlgItemTextA(dialog, 0xFFFF, text, sizeof text); // the number of a message box's text
    s_dialog = text;
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

TEST_F(Win32Platform, WarningsAreMessageBoxesUnlessTheHostTakesThem) {
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, AnswerDialog);
    platform::ShowWarning("Quorvex", "Something is odd");
    KillTimer(nullptr, timer);
    EXPECT_EQ(s_dialog, "Something is odd");

    std::string warning;
    SetWarningHandler([](const char* caption, const char* text,
                         void* user) { *static_cast<std::string*>(user) = std::string(caption) + ": " + text; },
                      &warning);
    platform::ShowWarning("Quorvex", "Something is odd");
    SetWarningHandler(nullptr, nullptr);
    EXPECT_EQ(warning, "Quorvex: Something is odd");
}

TEST_F(Win32Platform, CounterRunsAsFastAsItSays) {
    const double frequency = platform::CounterFrequency();
    ASSERT_GT(frequency, 0.0);
    const std::int64_t start = platform::CounterNow();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_GE(static_cast<double>(platform::CounterNow() - start) / frequency, 0.045);
}

// Positions beyond 4 GiB, in a file that is mostly a hole.
TEST_F(Win32Platform, FilesAreReadAtLargePositionsFromSeveralThreads) {
    namespace fs = std::filesystem;
    const std::string path = (fs::temp_directory_path() / "quorvex-large-file.bin").string();
    const std::int64_t place = (std::int64_t{5} << 30) + 3;
    fs::remove(path);
    {
        std::FILE* const file = platform::CreateNewFile(path);
        ASSERT_NE(file, nullptr);
        std::fputs("start", file);
        std::fclose(file);
        EXPECT_EQ(platform::CreateNewFile(path), nullptr);
        EXPECT_EQ(errno, EEXIST);
        std::error_code error;
        fs::resize_file(path, static_cast<std::uintmax_t>(place), error);
        ASSERT_FALSE(error) << error.message();
        std::ofstream(path, std::ios::binary | std::ios::app) << "end";
    }
    {
        platform::InputFile file;
        ASSERT_TRUE(file.Open(path.c_str()));
        EXPECT_EQ(file.Size(), place + 3);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 100; ++round) {
                    char bytes[8] = {};
                    EXPECT_EQ(file.ReadAt(place, bytes, 8), 3U);
                    EXPECT_STREQ(bytes, "end");
                    EXPECT_EQ(file.ReadAt(0, bytes, 5), 5U);
                    EXPECT_EQ(std::string(bytes, 5), "start");
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    fs::remove(path);
    EXPECT_FALSE(platform::InputFile().Open(path.c_str()));
    EXPECT_FALSE(platform::InputFile().Open(fs::temp_directory_path().string().c_str()));
    platform::InputFile device;
    EXPECT_TRUE(device.Open("NUL"));
    EXPECT_EQ(device.Size(), -1);
}

} // namespace
} // namespace KOVA::Quorvex::test
