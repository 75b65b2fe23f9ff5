// Fonts, scale and colours as this workstation has them.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

#include "controls/common/Appearance.h"

namespace kavidex::controls::win32 {

int DpiOf(HWND window); // of its monitor where Windows knows, else of the system
inline int Scaled(int units, int dpi) { return MulDiv(units, dpi, 96); }

// Only what is other than it was reaches the window: much is laid out often, and each move paints.
void Put(HWND window, const RECT& place); // in its parent
void ShowText(HWND window, const std::wstring& text);

int LineHeight(HWND window, HFONT font);

// The caller deletes it. Without a face: the system's message font.
HFONT MakeFont(const std::optional<FontFace>& face, int dpi);

bool HighContrast();
// An OLE colour, where the high bit names a system colour.
COLORREF ColourOf(std::uint32_t oleColour);

} // namespace kavidex::controls::win32
