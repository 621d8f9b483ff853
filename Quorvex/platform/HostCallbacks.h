#pragma once

// What the host wants to be called for (see NativeWindow.h), as both platforms' message queues ask for it.

namespace KOVA::Quorvex::platform {

// Lets the host deliver one event of its own; true when it did. False without a pump.
bool CallMessagePump();

// Hands a warning to the host's handler; false when there is none.
bool CallWarningHandler(const char* caption, const char* text);

} // namespace KOVA::Quorvex::platform
