// What the Tab key visits within a control's window.
#pragma once

#include <vector>

#include <windows.h>

namespace kavidex::controls::win32 {

// Adds the visible, enabled windows below `parent` that have the style, in their order. What lies
// within one of them is its own affair.
void CollectStops(HWND parent, std::vector<HWND>& stops);

// Moves the focus to the next or the previous one. False at either end, where the key belongs to
// what is around the control, and where the focus is at none of them.
bool StepFocus(const std::vector<HWND>& stops, bool back);

} // namespace kavidex::controls::win32
