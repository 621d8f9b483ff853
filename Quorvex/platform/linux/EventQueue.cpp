#include <Quorvex/platform/linux/EventQueue.h>

#include <sys/epoll.h>
#include <sys/eventfd.h>

namespace KOVA::Quorvex::platform {

namespace {

int OpenWakeDescriptor() {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    WatchDescriptor(descriptor);
    return descriptor;
}

} // namespace

int EventQueueDescriptor() {
    static const int s_descriptor = epoll_create1(EPOLL_CLOEXEC);
    return s_descriptor;
}

bool WatchDescriptor(int descriptor) {
    epoll_event event{};
    event.events = EPOLLIN;
    return epoll_ctl(EventQueueDescriptor(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void WakeHost(bool wake) {
    static const int s_descriptor = OpenWakeDescriptor();
    static bool s_awake = false;
    if (wake == s_awake) {
        return;
    }
    s_awake = wake;
    eventfd_t count = 0;
    if (wake) {
        eventfd_write(s_descriptor, 1);
    } else {
        eventfd_read(s_descriptor, &count);
    }
}

} // namespace KOVA::Quorvex::platform
