// A dialog without controls, made from nothing: the ground of forms and of their pages.
#pragma once

#include <windows.h>

namespace kavidex::controls::forms::win32 {

// `user` is kept in DWLP_USER before the first message that matters; null when Windows refuses.
HWND MakeEmptyDialog(HWND parent, DWORD style, DWORD exStyle, DLGPROC procedure, LPARAM user);

} // namespace kavidex::controls::forms::win32
