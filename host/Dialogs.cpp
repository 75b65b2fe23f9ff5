#include "host/Dialogs.h"

#include <commdlg.h>

#include "platform/win32/Variant.h"

namespace kavidex::host {

using platform::win32::FromWide;
using platform::win32::ToWide;

namespace {

using Fields = std::vector<std::pair<int, std::string*>>;

void Fill(HWND dialog, const Fields& fields) {
    for (const auto& [id, text] : fields) SetDlgItemTextW(dialog, id, ToWide(*text).c_str());
}

void Take(HWND dialog, const Fields& fields) {
    for (const auto& [id, text] : fields) {
        const HWND edit = GetDlgItem(dialog, id);
        std::wstring typed(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
        typed.resize(static_cast<std::size_t>(
            GetWindowTextW(edit, typed.data(), static_cast<int>(typed.size()))));
        *text = FromWide(typed);
    }
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lparam);
        Fill(dialog, *reinterpret_cast<Fields*>(lparam));
        return TRUE;
    }
    if (message != WM_COMMAND || (LOWORD(wparam) != IDOK && LOWORD(wparam) != IDCANCEL))
        return FALSE;
    if (LOWORD(wparam) == IDOK)
        Take(dialog, *reinterpret_cast<Fields*>(GetWindowLongPtrW(dialog, DWLP_USER)));
    EndDialog(dialog, LOWORD(wparam));
    return TRUE;
}

} // namespace

bool AskTexts(HWND owner, int dialog, Fields fields) {
    return DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(dialog), owner, Procedure,
                           reinterpret_cast<LPARAM>(&fields)) == IDOK;
}

std::vector<std::string> ChooseFiles(HWND owner) {
    std::wstring names(64 * 1024, L'\0');
    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpstrFile = names.data();
    choice.nMaxFile = static_cast<DWORD>(names.size());
    choice.lpstrTitle = L"Add files";
    choice.lpstrFilter = L"All files\0*.*\0";
    // NOCHANGEDIR: the dialog would leave the program in another folder.
    choice.Flags = OFN_ALLOWMULTISELECT | OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR |
                   OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&choice)) return {};
    // One full path, or the folder and the names in it, each ended by a zero.
    std::vector<std::string> parts;
    for (const wchar_t* part = names.c_str(); *part; part += wcslen(part) + 1)
        parts.push_back(FromWide(part));
    if (parts.size() == 1) return parts;
    std::vector<std::string> files;
    for (std::size_t i = 1; i < parts.size(); ++i) files.push_back(parts[0] + "\\" + parts[i]);
    return files;
}

} // namespace kavidex::host
