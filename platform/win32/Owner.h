// The window that message boxes and the busy dialog belong to: the host's.
#pragma once

#include <windows.h>

namespace kavidex::platform::win32 {

// A control hands over its window when it is activated. The top window around it is taken, or the
// active window where that belongs to it. When it goes the one before has its place again.
void SetHost(HWND window);
void DropHost(HWND window); // it is going

// A dialog of ours takes the host's place while it is up. Gives what was set.
HWND SetOwner(HWND window);

// Null when there is none, or it is gone.
HWND Owner();

// The module that this code lies in: the DLL's, not the host program's.
HINSTANCE OwnModule();

} // namespace kavidex::platform::win32
