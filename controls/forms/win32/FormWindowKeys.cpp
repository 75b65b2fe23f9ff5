// Which keys a form's window takes, and what they do.
#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/forms/win32/FormWindow.h"
#include "platform/text.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::forms::win32 {

bool FormWindow::HasButton(unsigned which) const {
    return std::any_of(lclForm.Fields().begin(), lclForm.Fields().end(),
                       [&](const Field& field) { return field.Row().Has(which); });
}

bool FormWindow::TranslateKey(const MSG& message) {
    if (!lclWindow || !(message.hwnd == lclWindow || IsChild(lclWindow, message.hwnd)))
        return false;
    if (message.message == WM_KEYDOWN && (PageKey(message) || FieldKey(message))) return true;
    const bool panel = GetWindowLongPtrW(lclWindow, GWL_STYLE) & WS_CHILD;
    if (panel && !PanelUses(message)) return false;
    MSG copy = message;
    return IsDialogMessageW(lclWindow, &copy) != FALSE;
}

// What a panel has no use for belongs to the window around it.
bool FormWindow::PanelUses(const MSG& message) const {
    const WPARAM key = message.wParam;
    if (message.message == WM_SYSCHAR) return IsMnemonic(static_cast<wchar_t>(key));
    if (message.message != WM_KEYDOWN) return false;
    const auto codes = SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0);
    const bool edit = codes & DLGC_HASSETSEL, control = GetKeyState(VK_CONTROL) < 0;
    switch (key) {
    case VK_TAB: {
        // Around either end it would come to the first, or from it.
        const HWND first = GetNextDlgTabItem(lclWindow, nullptr, FALSE);
        const HWND end = GetKeyState(VK_SHIFT) < 0
                             ? message.hwnd
                             : GetNextDlgTabItem(lclWindow, message.hwnd, FALSE);
        return !control && end != first;
    }
    case VK_ESCAPE: return HasButton(style::isCancel);
    case VK_RETURN:
        return (codes & (DLGC_WANTALLKEYS | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0 ||
               HasButton(style::isDefault);
    case VK_SPACE:
    case VK_BACK:
    case VK_DELETE: return true;
    case 'C':
    case 'V':
    case 'X':
    case 'Z': return edit && control;
    default: return controls::win32::IsMoveKey(key);
    }
}

bool FormWindow::IsMnemonic(wchar_t letter) const {
    const auto wanted = platform::LowerCase(platform::win32::FromWide({&letter, 1}));
    return std::any_of(lclLook.captions.begin(), lclLook.captions.end(), [&](const auto& caption) {
        const auto at =
            platform::LowerCase(platform::Replace(caption, "&&", "")).find("&" + wanted);
        return at != std::string::npos;
    });
}

// Ctrl+Tab goes from page to page, wherever the focus is, and around.
bool FormWindow::PageKey(const MSG& message) {
    const auto pressed = [](int key) { return GetKeyState(key) < 0; };
    if (message.wParam != VK_TAB || !pressed(VK_CONTROL) || pressed(VK_MENU)) return false;
    const auto strip = std::find_if(lclControls.begin(), lclControls.end(), [&](const auto& one) {
        return one->Of().Type() == Kind::Tabs && lclForm.IsShown(one->Of()) &&
               lclForm.IsUsable(one->Of()) && !one->Of().Items().empty();
    });
    if (strip == lclControls.end()) return false;
    Field& tabs = (*strip)->Of();
    const auto& pages = tabs.Items();
    const auto at = std::find_if(pages.begin(), pages.end(),
                                 [&](const Item& page) { return page.id == tabs.Selected(); });
    const auto count = pages.size();
    const auto now = static_cast<std::size_t>(at - pages.begin()) % count;
    const auto next = pages[(now + (pressed(VK_SHIFT) ? count - 1 : 1)) % count].id;
    for (const auto& control : lclControls) control->EndEdit();
    SetFocus((*strip)->Window());
    lclForm.Chosen(tabs, {next});
    (*strip)->Show(Aspect::Selection);
    return true;
}

bool FormWindow::FieldKey(const MSG& message) {
    auto* control = ControlOf(message.hwnd);
    if (!control || control->Window() != message.hwnd) return false; // an editor in place
    Field& field = control->Of();
    const bool edit =
        field.Type() == Kind::Edit || field.Type() == Kind::Memo || field.Type() == Kind::Browse;
    const bool items = field.Type() == Kind::List || field.Type() == Kind::Tree;
    const auto pressed = [](int key) { return GetKeyState(key) < 0; };
    if (edit && message.wParam == 'A' && pressed(VK_CONTROL) && !pressed(VK_MENU)) {
        SendMessageW(message.hwnd, EM_SETSEL, 0, -1);
        return true;
    }
    if (items) control->Flush();
    FieldEvent key{.field = field,
                   .what = What::Key,
                   .item = field.Selected(),
                   .key = static_cast<int>(message.wParam),
                   .control = pressed(VK_CONTROL),
                   .shift = pressed(VK_SHIFT)};
    if (lclForm.Handles(field, What::Key) && lclForm.Raise(&key)) return true;
    if (!items || field.Selected() == 0) return false;
    if (message.wParam == VK_F2) {
        control->EditItem(field.Selected(), 0);
        return true;
    }
    return message.wParam == VK_RETURN && lclForm.Handles(field, What::Activated) &&
           lclForm.Raise({.field = field, .what = What::Activated, .item = field.Selected()});
}

void FormWindow::TakeFocus() {
    const HWND focus = GetFocus();
    if (focus && IsChild(lclWindow, focus)) return;
    if (const HWND first = GetNextDlgTabItem(lclWindow, nullptr, FALSE))
        SendMessageW(lclWindow, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
}

} // namespace kavidex::controls::forms::win32
