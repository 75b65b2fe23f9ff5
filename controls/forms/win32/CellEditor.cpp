#include "controls/forms/win32/CellEditor.h"

#include <utility>

#include <commctrl.h>

#include "controls/forms/win32/FieldControl.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::ToWide;

void CellEditor::Open(HWND list, const RECT& cell, HFONT font, const std::string& text,
                      const std::vector<std::string>& choices, Done done) {
    Close(true);
    const bool choose = !choices.empty();
    const int height = cell.bottom - cell.top + (choose ? 12 * (cell.bottom - cell.top) : 0);
    const DWORD styles = choose ? CBS_DROPDOWNLIST | WS_VSCROLL : WS_BORDER | ES_AUTOHSCROLL;
    lclWindow = CreateWindowExW(
        0, choose ? L"COMBOBOX" : L"EDIT", L"", WS_CHILD | WS_VISIBLE | styles, cell.left, cell.top,
        cell.right - cell.left, height, list, nullptr, platform::win32::OwnModule(), nullptr);
    if (!lclWindow) return;
    lclDone = std::move(done);
    SendMessageW(lclWindow, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    for (const auto& choice : choices)
        SendMessageW(lclWindow, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToWide(choice).c_str()));
    if (choose) {
        SendMessageW(lclWindow, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                     reinterpret_cast<LPARAM>(ToWide(text).c_str()));
    } else {
        SetTextOf(lclWindow, text);
        SendMessageW(lclWindow, EM_SETSEL, 0, -1);
    }
    SetWindowSubclass(lclWindow, Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    SetFocus(lclWindow);
}

void CellEditor::Close(bool keep, int step) {
    const HWND window = std::exchange(lclWindow, nullptr);
    if (!window) return;
    const std::string text = TextOf(window);
    const Done done = std::exchange(lclDone, nullptr);
    const HWND list = GetParent(window);
    RemoveWindowSubclass(window, Procedure, 1);
    if (GetFocus() == window) SetFocus(list);
    DestroyWindow(window);
    if (keep && done) done(text, step);
}

bool CellEditor::Key(WPARAM key) {
    switch (key) {
    case VK_RETURN: Close(true); return true;
    case VK_ESCAPE: Close(false); return true;
    case VK_TAB: Close(true, GetKeyState(VK_SHIFT) < 0 ? -1 : 1); return true;
    default: return false;
    }
}

LRESULT CALLBACK CellEditor::Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                       DWORD_PTR self) {
    auto* editor = reinterpret_cast<CellEditor*>(self);
    if (message == WM_GETDLGCODE) return DLGC_WANTALLKEYS;
    if (message == WM_KEYDOWN && editor->Key(w)) return 0;
    if (message == WM_CHAR && (w == VK_RETURN || w == VK_ESCAPE || w == VK_TAB)) return 0;
    if (message == WM_KILLFOCUS && !IsChild(window, reinterpret_cast<HWND>(w))) {
        const LRESULT result = DefSubclassProc(window, message, w, l);
        editor->Close(true);
        return result;
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, Procedure, 1);
        editor->lclWindow = nullptr;
    }
    return DefSubclassProc(window, message, w, l);
}

} // namespace kavidex::controls::forms::win32
