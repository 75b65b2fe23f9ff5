// The system's own dialogs for a folder and a file.
#include <algorithm>

#include <windows.h>

#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include "controls/forms/win32/WindowsForms.h"
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

} // namespace kavidex::controls::forms::win32
