// The library's part in the host's event loop: its descriptor, its timers, and who gets a turn.

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "SeamWindow.h"
#include "X11Host.h"
#include <Quorvex/platform/Messages.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/WindowSystem.h>

using namespace KOVA::Quorvex;
using namespace std::chrono_literals;

namespace {

int s_ticks = 0;
std::function<void()> s_onTick;

void Tick(HWND /*window*/, UINT /*message*/, UINT_PTR /*id*/, DWORD /*time*/) {
    ++s_ticks;
    if (s_onTick) {
        s_onTick();
    }
}

bool StartTimer(unsigned int period) {
    s_ticks = 0;
    s_onTick = nullptr;
    return platform::StartThreadTimer(period, Tick);
}

TEST(X11Messages, TimerWakesTheHostAndDoesNotCatchUp) {
    ASSERT_TRUE(StartTimer(25));
    const auto end = std::chrono::steady_clock::now() + 500ms;
    while (std::chrono::steady_clock::now() < end) {
        ASSERT_TRUE(WaitForDescriptor(1000));
        ProcessEvents();
    }
    EXPECT_GE(s_ticks, 8); // 20 on an idle machine
    EXPECT_LE(s_ticks, 21);

    std::this_thread::sleep_for(200ms);
    s_ticks = 0;
    EXPECT_TRUE(ProcessEvents());
    EXPECT_FALSE(ProcessEvents());
    EXPECT_EQ(s_ticks, 1);
    EXPECT_FALSE(WaitForDescriptor(0));
}

TEST(X11Messages, EveryTimerTicksOnceATurn) {
    ASSERT_TRUE(StartTimer(5));
    ASSERT_TRUE(StartTimer(5));
    int nested = 0;
    // A tick that takes longer than the period, and one that processes events itself.
    s_onTick = [&] {
        std::this_thread::sleep_for(10ms);
        if (++nested == 1) {
            ProcessEvents();
        }
    };
    std::this_thread::sleep_for(20ms);
    ProcessEvents();
    EXPECT_GE(s_ticks, 3) << "one tick of each timer, and those of the turn inside";
    EXPECT_LE(s_ticks, 4);
}

TEST(X11Messages, DescriptorIsReadableForEventsThatAReplyBrought) {
    X11Host host;
    const Window xid = host.MakeWindow(0, 0, 50, 50);
    SeamWindow window(xid);
    ProcessAll();
    window.messages.clear();
    XClearArea(host.Connection(), xid, 0, 0, 5, 5, True);
    host.Sync();
    unsigned int width = 0;
    unsigned int height = 0;
    ASSERT_TRUE(platform::GetClientSize(window.Handle(), &width, &height)); // takes the event off the socket
    ASSERT_TRUE(WaitForDescriptor(0));
    EXPECT_TRUE(ProcessEvents());
    ASSERT_EQ(window.messages.size(), 1U);
    EXPECT_EQ(window.messages[0].message, WM_PAINT);
    EXPECT_FALSE(WaitForDescriptor(0));
    EXPECT_FALSE(ProcessEvents());

    // One message at a time leaves the rest, and the host has to hear of that as well.
    host.Resize(xid, 80, 60);
    ASSERT_TRUE(WaitForDescriptor(1000));
    ASSERT_TRUE(platform::DispatchOneMessage());
    EXPECT_TRUE(WaitForDescriptor(0));
    ASSERT_TRUE(platform::DispatchOneMessage());
    EXPECT_FALSE(platform::DispatchOneMessage());
    EXPECT_FALSE(WaitForDescriptor(0));
}

TEST(X11Messages, NobodyIsStarved) {
    X11Host host;
    const Window xids[] = {host.MakeWindow(0, 0, 50, 50), host.MakeWindow(100, 0, 50, 50)};
    SeamWindow first(xids[0]);
    SeamWindow second(xids[1]);
    ProcessAll();
    first.messages.clear();
    second.messages.clear();
    int pumped = 0;
    SetMessagePump(
        [](void* user) {
            ++*static_cast<int*>(user);
            return true; // the mouse moves all the time
        },
        &pumped);
    ASSERT_TRUE(StartTimer(1));
    const auto turn = [&] {
        for (const Window xid : xids) {
            XClearArea(host.Connection(), xid, 0, 0, 5, 5, True);
        }
        host.Sync();
        std::this_thread::sleep_for(2ms); // the timer is due with every turn
        return platform::DispatchOneMessage();
    };
    for (int i = 0; i < 60; ++i) {
        ASSERT_TRUE(turn());
    }
    EXPECT_GE(s_ticks, 10);
    EXPECT_GE(pumped, 10);
    EXPECT_GE(first.messages.size(), 8U);
    EXPECT_GE(second.messages.size(), 8U);

    const int before = pumped;
    ProcessEvents();
    EXPECT_EQ(pumped, before) << "the host that calls ProcessEvents delivers its events itself";
    SetMessagePump(nullptr, nullptr);
}

TEST(X11Messages, WarningsGoToTheHostOrToStandardError) {
    std::string heard;
    SetWarningHandler([](const char* caption, const char* text,
                         void* user) { *static_cast<std::string*>(user) = std::string(caption) + "|" + text; },
                      &heard);
    platform::ShowWarning("Quorvex", "too small");
    EXPECT_EQ(heard, "Quorvex|too small");
    SetWarningHandler(nullptr, nullptr);
    testing::internal::CaptureStderr();
    platform::ShowWarning("Quorvex", "too large");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Quorvex: too large\n");
}

} // namespace
