#include <Quorvex/platform/Messages.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include <sys/timerfd.h>
#include <unistd.h>

#include <Quorvex/platform/HostCallbacks.h>
#include <Quorvex/platform/NativeWindow.h>
#include <Quorvex/platform/linux/EventQueue.h>
#include <Quorvex/platform/linux/X11Windows.h>

namespace KOVA::Quorvex {

namespace platform {

namespace {

constexpr double NANOSECONDS_PER_SECOND = 1e9;

struct Timer {
    int descriptor;
    TimerCallback callback;
};

// Never destroyed, like the window records.
std::vector<Timer>& Timers() {
    static auto& timers = *new std::vector<Timer>;
    return timers;
}

// However often the period has passed, one tick. The callback may start timers.
bool TickWhenDue(std::size_t index) {
    const Timer timer = Timers()[index];
    std::uint64_t periods = 0;
    if (read(timer.descriptor, &periods, sizeof periods) != static_cast<ssize_t>(sizeof periods)) {
        return false;
    }
    timer.callback(nullptr, WM_TIMER, index + 1, static_cast<DWORD>(CounterNow() / 1'000'000));
    return true;
}

// The descriptor has to stay readable for what was noted and not delivered.
void NoteEvents() {
    WakeHost(false);
    NoteX11Events();
    if (X11MessagesWait()) {
        WakeHost(true);
    }
}

enum Source : std::size_t { WINDOWS, PUMP, FIRST_TIMER };

bool DeliverFrom(std::size_t source) {
    switch (source) {
    case WINDOWS:
        return DeliverX11Message();
    case PUMP:
        return CallMessagePump();
    default:
        return TickWhenDue(source - FIRST_TIMER);
    }
}

} // namespace

bool StartThreadTimer(unsigned int periodMilliseconds, TimerCallback callback) {
    const unsigned int milliseconds = std::max(periodMilliseconds, 1U);
    timespec period{};
    period.tv_sec = static_cast<time_t>(milliseconds / 1000);
    period.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
    const itimerspec setting{period, period};
    const int descriptor = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    if (timerfd_settime(descriptor, 0, &setting, nullptr) != 0 || !WatchDescriptor(descriptor)) {
        close(descriptor);
        return false;
    }
    Timers().push_back({descriptor, callback});
    return true;
}

// Each source in its turn: whichever is always ready, the others get through. The turn moves on before the delivery,
// as a callback may come here again.
bool DispatchOneMessage() {
    static std::size_t s_turn = 0;
    NoteEvents();
    const std::size_t sources = FIRST_TIMER + Timers().size();
    const std::size_t first = s_turn;
    for (std::size_t i = 0; i < sources; ++i) {
        const std::size_t source = (first + i) % sources;
        s_turn = (source + 1) % sources;
        if (DeliverFrom(source)) {
            return true;
        }
    }
    return false;
}

void ShowWarning(const char* caption, const char* text) {
    if (!CallWarningHandler(caption, text)) {
        std::fprintf(stderr, "%s: %s\n", caption, text);
    }
}

double CounterFrequency() {
    return NANOSECONDS_PER_SECOND;
}

std::int64_t CounterNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

} // namespace platform

int EventDescriptor() {
    return platform::EventQueueDescriptor();
}

// Only what waits at the beginning: drawing may take longer than the next event or tick needs to come, and the host has
// to get its turn.
bool ProcessEvents() {
    using namespace platform;
    bool delivered = false;
    NoteEvents();
    while (DeliverX11Message()) {
        delivered = true;
    }
    const std::size_t timers = Timers().size();
    for (std::size_t i = 0; i < timers; ++i) {
        delivered = TickWhenDue(i) || delivered;
    }
    NoteEvents();
    return delivered;
}

} // namespace KOVA::Quorvex
