// The host's small dialogs: labelled texts, OK and Cancel.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace kavidex::host {

// Shows the dialog with the texts in the fields named by their ids; true when the user chose OK,
// the texts then hold what was typed.
bool AskTexts(HWND owner, int dialog, std::vector<std::pair<int, std::string*>> fields);

// Files chosen by the user, none when cancelled.
std::vector<std::string> ChooseFiles(HWND owner);

} // namespace kavidex::host
