// Shows a prepared popup menu.
#pragma once

#include <cstddef>
#include <optional>

#include <windows.h>

#include "controls/common/PopupMenu.h"

namespace kavidex::controls::win32 {

// At a screen point, for `owner`; waits, and gives the chosen entry's position in `menu`.
std::optional<std::size_t> TrackMenu(HWND owner, const PopupMenu& menu, int x, int y);

} // namespace kavidex::controls::win32
