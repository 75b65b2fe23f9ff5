// The pictures of check boxes, which lists and trees make for themselves and leave behind.
#pragma once

#include <windows.h>

namespace kavidex::controls::win32 {

// Frees them with the window of a list view or tree view that shares its other pictures.
void FreeCheckImages(HWND list);

} // namespace kavidex::controls::win32
