// Shows a prepared menu.
#pragma once

#include <cstddef>
#include <optional>

#include <windows.h>

#include "controls/common/PopupMenu.h"

namespace kavidex::controls::win32 {

// The entries as a menu as a menu of the system, with ids from 1 on in their order: below `top`, a
// popup or a window's bar, which the caller owns.
void FillMenu(HMENU top, const PopupMenu& menu);

// At a screen point, for `owner`; waits, and gives the chosen entry's position in `menu`.
std::optional<std::size_t> TrackMenu(HWND owner, const PopupMenu& menu, int x, int y);

// The tip would cover a menu: it stays away while one is open on this thread.
void HideTipUnderMenus(HWND tip);

// Closes the menu that is open on this thread when the window, or one within it, owns it.
void EndMenuOf(HWND window);

} // namespace kavidex::controls::win32
