// The example hosts, driven from outside like by a user: synthetic mouse and keys, its windows on the screen.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <spawn.h>
#include <sys/wait.h>

#include "X11Host.h"

using namespace std::chrono_literals;

namespace {

constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;

// Ten seconds at most.
template <class Get, class Condition> auto WaitFor(Get get, Condition holds) {
    auto value = get();
    for (int i = 0; i < 400 && !holds(value); ++i) {
        std::this_thread::sleep_for(25ms);
        value = get();
    }
    return value;
}

// A running example, and what the screen shows of it.
class Example {
public:
    Example(X11Host& host, const std::vector<std::string>& arguments, const char* program = QUORVEX_EXAMPLE_X11)
        : m_host(host) {
        std::vector<std::string> all = arguments;
        all.insert(all.begin(), program);
        std::vector<char*> argv;
        for (std::string& argument : all) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        posix_spawn(&m_process, argv[0], nullptr, nullptr, argv.data(), environ);
    }
    ~Example() {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            ExitCode();
        }
    }
    Example(const Example&) = delete;
    Example& operator=(const Example&) = delete;

    int ExitCode() {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    }

    // A program that is busy for as long as it is held: what the user does meanwhile comes to it all at once.
    void Hold() const { kill(m_process, SIGSTOP); }
    void LetGo() const { kill(m_process, SIGCONT); }

    std::vector<Window> WaitForWindows(std::size_t count) {
        return WaitFor([&] { return ShownWindows(); }, [&](const auto& windows) { return windows.size() == count; });
    }

    // The picture of the part when it has not changed for a quarter of a second.
    Picture Settled(Window window) {
        return SettledWhen([](const Picture& picture) { return PartPixels(picture) > 1000; }, window);
    }
    // The same, and not before the condition holds: on a busy machine a picture on the way there may stand still as
    // long.
    template <class Condition> Picture SettledWhen(Condition holds, Window window) {
        Picture last = WaitFor([&] { return m_host.Read(window); }, holds);
        for (int i = 0; i < 40; ++i) {
            std::this_thread::sleep_for(250ms);
            Picture now = m_host.Read(window);
            if (now.pixels == last.pixels) {
                break;
            }
            last = std::move(now);
        }
        return last;
    }

    // The part is grey, the background a gradient of blues.
    static std::size_t PartPixels(const Picture& picture) {
        std::size_t count = 0;
        for (const Color& color : picture.pixels) {
            const bool grey = color.red == color.green && color.green == color.blue;
            count += static_cast<std::size_t>(grey && color.red > 0);
        }
        return count;
    }

private:
    // Toolkits make others that nobody sees.
    std::vector<Window> ShownWindows() {
        std::vector<Window> windows = m_host.Children(XDefaultRootWindow(m_host.Connection()));
        windows.erase(std::remove_if(windows.begin(), windows.end(),
                                     [this](Window window) {
                                         XWindowAttributes attributes;
                                         XGetWindowAttributes(m_host.Connection(), window, &attributes);
                                         return attributes.map_state != IsViewable;
                                     }),
                      windows.end());
        return windows;
    }

    X11Host& m_host;
    pid_t m_process = 0;
};

class X11Example : public testing::Test {
protected:
    void MoveMouse(int x, int y) { XTestFakeMotionEvent(host.Connection(), -1, x, y, CurrentTime); }
    void Button(unsigned int button, bool press) {
        XTestFakeButtonEvent(host.Connection(), button, press ? True : False, CurrentTime);
    }

    void Drag(int x0, int y0, int x1, int y1) {
        MoveMouse(x0, y0);
        Button(1, true);
        for (int i = 1; i <= 10; ++i) {
            MoveMouse(x0 + (x1 - x0) * i / 10, y0 + (y1 - y0) * i / 10);
            host.Sync();
            std::this_thread::sleep_for(10ms);
        }
        Button(1, false);
        host.Sync();
    }
    void TurnWheel(unsigned int button, int clicks) {
        for (int i = 0; i < clicks; ++i) {
            Button(button, true);
            Button(button, false);
        }
        host.Sync();
    }
    void Close(Window window) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(host.Connection(), "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(XInternAtom(host.Connection(), "WM_DELETE_WINDOW", False));
        XSendEvent(host.Connection(), window, False, NoEventMask, &event);
        host.Sync();
    }
    // For looking at: only when the variable names a folder.
    static void Keep(const Picture& picture, const std::string& name) {
        if (const char* folder = std::getenv("QUORVEX_TEST_PICTURES")) {
            picture.Write(std::string(folder) + "/" + name + ".ppm");
        }
    }

    X11Host host;
};

class ToolkitExample : public X11Example, public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(ToolkitExample, MouseTurnsAndZoomsThePart) {
    Example example(host, {}, GetParam().second);
    const std::vector<Window> windows = example.WaitForWindows(1);
    ASSERT_EQ(windows.size(), 1U);
    const Picture first = example.Settled(windows[0]);
    Keep(first, "example-first");
    const std::size_t size = Example::PartPixels(first);
    ASSERT_GT(size, WIDTH * HEIGHT / 20U);

    // There and back: a turned part, and then the first picture again. The program hears of the way there when the
    // mouse is long at its end, of the way back while it is on it.
    example.Hold();
    Drag(200, 200, 320, 260);
    example.LetGo();
    const Picture turned =
        example.SettledWhen([&](const Picture& now) { return now.CountDifferent(first) > size / 10; }, windows[0]);
    Keep(turned, "example-turned");
    EXPECT_GT(turned.CountDifferent(first), size / 10);
    EXPECT_GT(Example::PartPixels(turned), size / 2);
    Drag(320, 260, 200, 200);
    const auto isFirst = [&](const Picture& now) { return now.CountDifferent(first) < size / 100; };
    EXPECT_TRUE(isFirst(example.SettledWhen(isFirst, windows[0])));

    TurnWheel(Button4, 3);
    const Picture closer =
        example.SettledWhen([&](const Picture& now) { return Example::PartPixels(now) > size + size / 4; }, windows[0]);
    Keep(closer, "example-closer");
    EXPECT_GT(Example::PartPixels(closer), size + size / 4);
    TurnWheel(Button5, 8);
    const auto isSmaller = [&](const Picture& now) { return Example::PartPixels(now) < size; };
    EXPECT_TRUE(isSmaller(example.SettledWhen(isSmaller, windows[0])));

    // A larger window gets a picture of its own size, not the old one enlarged.
    host.Resize(windows[0], 800, 700);
    const Picture larger = example.SettledWhen(
        [](const Picture& now) {
            return now.width == 800 && now.Count({0, 0, 0}) == 0;
        },
        windows[0]);
    Keep(larger, "example-larger");
    EXPECT_EQ(larger.width, 800);
    EXPECT_EQ(larger.Count({0, 0, 0}), 0U) << "bars beside the picture";

    Close(windows[0]);
    EXPECT_EQ(example.ExitCode(), 0);
}

// Those that were built.
std::vector<std::pair<const char*, const char*>> Hosts() {
    return {
#ifdef QUORVEX_EXAMPLE_QT
        {"qt", QUORVEX_EXAMPLE_QT},
#endif
#ifdef QUORVEX_EXAMPLE_GLFW
        {"glfw", QUORVEX_EXAMPLE_GLFW},
#endif
        {"x11", QUORVEX_EXAMPLE_X11}};
}

INSTANTIATE_TEST_SUITE_P(Hosts, ToolkitExample, testing::ValuesIn(Hosts()),
                         [](const auto& info) { return std::string(info.param.first); });

TEST_F(X11Example, SeveralWindowsEachWithItsView) {
    Example example(host, {"--windows", "3"});
    const std::vector<Window> windows = example.WaitForWindows(3);
    ASSERT_EQ(windows.size(), 3U);
    std::vector<Picture> first;
    for (const Window window : windows) {
        first.push_back(example.Settled(window));
        EXPECT_EQ(first.back().CountDifferent(first.front()), 0U);
    }
    Drag(WIDTH + 200, 200, WIDTH + 320, 260);
    const auto isTurned = [&](const Picture& now) { return now.CountDifferent(first[1]) > 1000; };
    EXPECT_TRUE(isTurned(example.SettledWhen(isTurned, windows[1])));
    EXPECT_EQ(example.Settled(windows[0]).CountDifferent(first[0]), 0U);
    EXPECT_EQ(example.Settled(windows[2]).CountDifferent(first[2]), 0U);
    if (std::getenv("QUORVEX_TEST_PICTURES") != nullptr) {
        Keep(host.Read(XDefaultRootWindow(host.Connection())), "example-three");
    }

    // q goes to the window with the focus.
    XSetInputFocus(host.Connection(), windows[2], RevertToNone, CurrentTime);
    const KeyCode key = XKeysymToKeycode(host.Connection(), XK_q);
    XTestFakeKeyEvent(host.Connection(), key, True, CurrentTime);
    XTestFakeKeyEvent(host.Connection(), key, False, CurrentTime);
    host.Sync();
    EXPECT_EQ(example.ExitCode(), 0);
}

TEST_F(X11Example, RefusesWhatItCannotShow) {
    EXPECT_EQ(Example(host, {"--windows"}).ExitCode(), 2);
    EXPECT_EQ(Example(host, {"one.stl", "two.stl"}).ExitCode(), 2);
    EXPECT_EQ(Example(host, {"/no/such/file.stl"}).ExitCode(), 1);
}

} // namespace
