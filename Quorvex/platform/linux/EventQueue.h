#pragma once

// The descriptor with which the host's event loop waits for the library: an epoll set of the X connection, the timers
// and a wake-up of our own.

namespace KOVA::Quorvex::platform {

// -1 when the system has none to give.
int EventQueueDescriptor();

// False on failure.
bool WatchDescriptor(int descriptor);

// Makes the set readable although its other members may be silent, or stops that.
void WakeHost(bool wake);

} // namespace KOVA::Quorvex::platform
