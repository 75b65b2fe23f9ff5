// The system's own dialogs for a folder and a file.
#include <algorithm>

#include <windows.h>

#include <cderr.h>
#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include "controls/forms/win32/WindowsForms.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/win32/ActivationScope.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::FromWide;
using platform::win32::ToWide;

namespace {

int CALLBACK SelectStart(HWND window, UINT message, LPARAM, LPARAM start) {
    if (message == BFFM_INITIALIZED && start) SendMessageW(window, BFFM_SETSELECTIONW, TRUE, start);
    return 0;
}

} // namespace

std::optional<std::string> WindowsForms::ChooseFolder(std::string_view caption,
                                                      std::string_view start) {
    const platform::win32::ActivationScope scope;
    const auto title = ToWide(caption), from = ToWide(start);
    BROWSEINFOW choice{};
    choice.hwndOwner = OwnerWindow();
    choice.lpszTitle = title.c_str();
    choice.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    choice.lpfn = SelectStart;
    choice.lParam = from.empty() ? 0 : reinterpret_cast<LPARAM>(from.c_str());
    PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&choice);
    if (!chosen) return std::nullopt;
    wchar_t path[MAX_PATH];
    const bool known = SHGetPathFromIDListW(chosen, path);
    CoTaskMemFree(chosen);
    if (!known) return std::nullopt;
    return FromWide(path);
}

std::optional<std::string> WindowsForms::ChooseFile(std::string_view caption,
                                                    std::string_view start,
                                                    std::string_view pattern, bool save) {
    const platform::win32::ActivationScope scope;
    const auto title = ToWide(caption), from = ToWide(start), kinds = ToWide(pattern);
    std::wstring path(32 * 1024, L'\0');
    from.copy(path.data(), path.size() - 1);
    std::wstring filter = kinds.empty() ? L"*.*" : kinds;
    filter = filter + L'\0' + filter + L'\0';
    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = OwnerWindow();
    choice.lpstrFile = path.data();
    choice.nMaxFile = static_cast<DWORD>(path.size());
    choice.lpstrTitle = title.c_str();
    choice.lpstrFilter = filter.c_str();
    // NOCHANGEDIR: the dialog would leave the program in another folder.
    choice.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    if (!save) choice.Flags |= OFN_FILEMUSTEXIST;
    if (!(save ? GetSaveFileNameW(&choice) : GetOpenFileNameW(&choice))) return std::nullopt;
    return FromWide(path.c_str());
}

std::vector<std::string> WindowsForms::ChooseFiles(std::string_view caption,
                                                   std::string_view start) {
    const platform::win32::ActivationScope scope;
    const auto title = ToWide(caption), from = ToWide(start);
    std::wstring names(1024 * 1024, L'\0');
    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = OwnerWindow();
    choice.lpstrFile = names.data();
    choice.nMaxFile = static_cast<DWORD>(names.size());
    choice.lpstrTitle = title.c_str();
    choice.lpstrInitialDir = from.empty() ? nullptr : from.c_str();
    choice.lpstrFilter = L"*.*\0*.*\0";
    choice.Flags = OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR |
                   OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&choice)) {
        if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL)
            throw platform::Error(platform::errors::fail,
                                  "So many files cannot be chosen at once.");
        return {};
    }
    // One full path, or the folder and the names in it, each ended by a zero.
    std::vector<std::string> parts;
    for (const wchar_t* part = names.c_str(); *part; part += wcslen(part) + 1)
        parts.push_back(FromWide(part));
    if (parts.size() == 1) return parts;
    std::vector<std::string> files;
    for (std::size_t i = 1; i < parts.size(); ++i)
        files.push_back(platform::JoinPath(parts[0], parts[i]));
    return files;
}

} // namespace kavidex::controls::forms::win32
