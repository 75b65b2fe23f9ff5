// The menu of the sample host in the languages of the control.
#pragma once

#include <windows.h>

#include <string_view>

namespace kavidex::host {

constexpr int languages = 4; // Dutch, English, German, French, as the control counts them

// The text in that language, whose English is given; itself where there is none.
std::string_view Text(std::string_view english, int language);

// To be destroyed, or handed to a window.
HMENU MakeMenu(int language);

} // namespace kavidex::host
