// The host's small dialogs: which dossier, which database, which files.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kavidex::host {

// Each shows the texts it is given; true when the user chose OK, they then hold what was typed.
bool AskDossier(HWND owner, int language, std::string& key, std::string& description);
bool AskConnection(HWND owner, int language, std::string& database, std::string& store);

// Files chosen by the user, none when cancelled.
std::vector<std::string> ChooseFiles(HWND owner, int language);

} // namespace kavidex::host
