// Pictures of ours as Windows icons, in the system's colours where it asks for high contrast.
#pragma once

#include <windows.h>

#include "controls/pictures/Pictures.h"

namespace kavidex::controls::win32 {

// COLOR_ numbers of what stands in high contrast for shapes and for what lies behind them.
PictureColours SystemColours(int fore, int back);

// The caller destroys it; null when Windows refuses.
HICON IconOf(const Picture& picture);

} // namespace kavidex::controls::win32
