#include "controls/forms/win32/FieldControl.h"

#include "platform/text.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

using platform::win32::FromWide;
using platform::win32::ToWide;

std::string TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return platform::Replace(FromWide(text), "\r\n", "\n");
}

void SetTextOf(HWND window, const std::string& text) {
    if (TextOf(window) == text) return; // the cursor stays where it is
    SetWindowTextW(window, ToWide(platform::Replace(text, "\n", "\r\n")).c_str());
}

HWND FieldControl::Child(HWND parent, int id, const wchar_t* className, DWORD style, DWORD exStyle,
                         const wchar_t* text) {
    const HWND child = CreateWindowExW(exStyle, className, text, WS_CHILD | style, 0, 0, 1, 1,
                                       parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                       platform::win32::OwnModule(), nullptr);
    if (!lclWindow) lclWindow = child;
    return child;
}

void FieldControl::NameFor(HWND parent) {
    if (lclField.Row().caption.empty()) return;
    const auto text = ToWide(lclForm.Text(lclField.Row().caption));
    CreateWindowExW(0, L"STATIC", text.c_str(), WS_CHILD, 0, 0, 1, 1, parent, nullptr,
                    platform::win32::OwnModule(), nullptr);
}

void FieldControl::MoveTo(const RECT& place) {
    MoveWindow(lclWindow, place.left, place.top, place.right - place.left, place.bottom - place.top,
               TRUE);
}

void FieldControl::ShowLook() {
    const HFONT font = lclLook.Font(lclField.Row().Has(style::bold));
    SendMessageW(lclWindow, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void FieldControl::ShowState(bool shown, bool usable) {
    if ((IsWindowEnabled(lclWindow) != FALSE) != usable) EnableWindow(lclWindow, usable);
    const bool visible = (GetWindowLongPtrW(lclWindow, GWL_STYLE) & WS_VISIBLE) != 0;
    if (visible != shown) ShowWindow(lclWindow, shown ? SW_SHOWNA : SW_HIDE);
}

void FieldControl::Post(LPARAM what) const {
    PostMessageW(lclLook.dialog, posted, static_cast<WPARAM>(GetDlgCtrlID(lclWindow)), what);
}

} // namespace kavidex::controls::forms::win32
