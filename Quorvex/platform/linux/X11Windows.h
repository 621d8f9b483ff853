#pragma once

#include <Quorvex/platform/linux/Records.h>

// The host's X11 windows.

namespace KOVA::Quorvex::platform {

// The window with that number, or with a child of that number of ours in it; null when there is none. Windows that are
// gone are not found: their number may be another one's by now.
WindowRecord* FindX11Window(unsigned long xid);

// Takes the events that have come in and notes in the records what they mean; calls nobody.
void NoteX11Events();

// Delivers the next of the messages that were noted. False when there are none.
bool DeliverX11Message();
bool X11MessagesWait();

// Leaves the host's window alone from now on, and takes ours away from it.
void ForgetX11Window(WindowRecord* window);

// False when the window does not exist any more.
bool GetX11WindowSize(const WindowRecord* window, unsigned int* width, unsigned int* height);

void DrawX11Line(const WindowRecord* window, int endX, int y, bool black);

// See FocusWindow.
WindowRecord* FocusedX11Window();

} // namespace KOVA::Quorvex::platform
