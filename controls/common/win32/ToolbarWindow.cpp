#include "controls/common/win32/ToolbarWindow.h"

#include <algorithm>
#include <utility>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TrackMenu.h"
#include "platform/win32/OwnCall.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int firstCommand = 100; // plus the position among the items
constexpr int iconUnits = 20;

BYTE StyleOf(CommandKind kind) {
    switch (kind) {
    case CommandKind::Separator: return BTNS_SEP;
    case CommandKind::Owner: return BTNS_BUTTON | BTNS_WHOLEDROPDOWN | BTNS_AUTOSIZE;
    case CommandKind::Split: return BTNS_BUTTON | BTNS_DROPDOWN | BTNS_AUTOSIZE;
    case CommandKind::Toggle: return BTNS_CHECK | BTNS_AUTOSIZE;
    default: return BTNS_BUTTON | BTNS_AUTOSIZE;
    }
}

BYTE StateOf(const ToolbarItem& item) {
    return static_cast<BYTE>((item.visible ? 0 : TBSTATE_HIDDEN) |
                             (item.enabled ? TBSTATE_ENABLED : 0) |
                             (item.pressed ? TBSTATE_CHECKED : 0));
}

} // namespace

int ToolbarWindow::CommandOf(std::string_view name) const {
    for (std::size_t i = 0; i < lclItems.size(); ++i)
        if (lclItems[i].name == name) return firstCommand + static_cast<int>(i);
    return -1;
}

const ToolbarItem* ToolbarWindow::ItemOf(int command) const {
    const auto index = static_cast<std::size_t>(command - firstCommand);
    return command >= firstCommand && index < lclItems.size() ? &lclItems[index] : nullptr;
}

HWND ToolbarWindow::Create(HWND parent, int id) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    lclWindow = CreateWindowExW(
        0, TOOLBARCLASSNAMEW, L"",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TBSTYLE_FLAT | TBSTYLE_LIST |
            TBSTYLE_WRAPABLE | TBSTYLE_TOOLTIPS | CCS_NODIVIDER | CCS_NORESIZE | CCS_NOPARENTALIGN,
        0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
        platform::win32::OwnModule(), nullptr);
    if (!lclWindow) return nullptr;
    SendMessageW(lclWindow, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    // The texts of the buttons stay unseen; screen readers read them.
    SendMessageW(lclWindow, TB_SETEXTENDEDSTYLE, 0,
                 TBSTYLE_EX_MIXEDBUTTONS | TBSTYLE_EX_DRAWDDARROWS | TBSTYLE_EX_DOUBLEBUFFER);
    // Not by SetWindowSubclass, which looks its list up twice for each of a toolbar's many
    // messages.
    SetWindowLongPtrW(lclWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    lclOwnProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(lclWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
    return lclWindow;
}

void ToolbarWindow::Forget() {
    lclWindow = nullptr;
    lclFilled = false;
    lclHeight = 0;
    lclImages.reset();
}

void ToolbarWindow::BuildLook(int dpi) {
    lclDpi = dpi;
    const int size = Scaled(iconUnits, dpi);
    const auto before = std::exchange(lclImages, PicturesOf(PictureSet::Buttons, size));
    if (lclFilled && before == lclImages) return ShowButtons();
    lclItems = lclSource.Toolbar();
    std::vector<int> images;
    for (const auto& item : lclItems) {
        const int image = item.picture.empty() ? -1 : lclImages->Index(item.picture);
        images.push_back(image < 0 ? I_IMAGENONE : image);
    }
    SendMessageW(lclWindow, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(lclImages->Handle()));
    SendMessageW(lclWindow, TB_SETDISABLEDIMAGELIST, 0,
                 reinterpret_cast<LPARAM>(lclImages->Faint()));
    SendMessageW(lclWindow, TB_SETINDENT, static_cast<WPARAM>(Scaled(2, dpi)), 0);
    SendMessageW(lclWindow, TB_SETBITMAPSIZE, 0, MAKELPARAM(size, size));
    while (SendMessageW(lclWindow, TB_DELETEBUTTON, 0, 0)) {
    }
    lclTooltips.clear();
    for (const auto& item : lclItems) lclTooltips.push_back(platform::win32::ToWide(item.tooltip));
    std::vector<TBBUTTON> buttons;
    for (std::size_t i = 0; i < images.size(); ++i) {
        const auto kind = lclItems[i].kind;
        TBBUTTON button{};
        button.idCommand = firstCommand + static_cast<int>(i);
        button.iBitmap = kind == CommandKind::Separator ? Scaled(8, dpi) : images[i];
        button.fsState = StateOf(lclItems[i]);
        button.fsStyle = StyleOf(kind);
        button.iString =
            lclTooltips[i].empty() ? -1 : reinterpret_cast<INT_PTR>(lclTooltips[i].c_str());
        buttons.push_back(button);
    }
    SendMessageW(lclWindow, TB_ADDBUTTONSW, buttons.size(),
                 reinterpret_cast<LPARAM>(buttons.data()));
    Measure();
    lclFilled = true;
}

void ToolbarWindow::Measure() {
    lclHeight = 0;
    SendMessageW(lclWindow, TB_AUTOSIZE, 0, 0);
}

// Only what changed: a text or a button that comes has the whole toolbar measured and painted.
void ToolbarWindow::ShowButtons() {
    if (!lclWindow || !lclFilled) return;
    const auto before = std::exchange(lclItems, lclSource.Toolbar());
    bool measures = false;
    for (std::size_t i = 0; i < lclItems.size(); ++i) {
        const auto &now = lclItems[i], &old = before[i];
        if (now == old) continue;
        measures = measures || now.visible != old.visible;
        if (StateOf(now) != StateOf(old)) WriteState(firstCommand + static_cast<int>(i), now);
        if (now.tooltip == old.tooltip || now.tooltip.empty()) continue;
        measures = true;
        lclTooltips[i] = platform::win32::ToWide(now.tooltip);
        TBBUTTONINFOW info{};
        info.cbSize = sizeof info;
        info.dwMask = TBIF_TEXT;
        info.pszText = lclTooltips[i].data();
        SendMessageW(lclWindow, TB_SETBUTTONINFOW, firstCommand + i,
                     reinterpret_cast<LPARAM>(&info));
    }
    if (measures) Measure();
}

// That it ends a row is the toolbar's own.
void ToolbarWindow::WriteState(int command, const ToolbarItem& item) {
    const auto id = static_cast<WPARAM>(command);
    const auto ends = SendMessageW(lclWindow, TB_GETSTATE, id, 0) & TBSTATE_WRAP;
    SendMessageW(lclWindow, TB_SETSTATE, id, StateOf(item) | ends);
}

int ToolbarWindow::Height() const {
    if (lclHeight > 0) return lclHeight;
    const auto size = static_cast<DWORD>(SendMessageW(lclWindow, TB_GETBUTTONSIZE, 0, 0));
    int bottom = HIWORD(size);
    RECT place{}; // of a hidden button it is not told; no other stands below the last one
    for (auto i = lclItems.size(); i > 0; --i)
        if (SendMessageW(lclWindow, TB_GETITEMRECT, i - 1, reinterpret_cast<LPARAM>(&place))) {
            bottom = std::max<int>(bottom, place.bottom);
            break;
        }
    return lclHeight = bottom + Scaled(4, lclDpi);
}

void ToolbarWindow::Place(int width) {
    RECT before{};
    GetClientRect(lclWindow, &before);
    if (before.right != width) {
        // What the width does not hold goes to further rows, and the height follows them.
        SetWindowPos(lclWindow, nullptr, 0, 0, width, before.bottom,
                     SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
        Measure();
        InvalidateRect(lclWindow, nullptr, TRUE);
    }
    Put(lclWindow, {0, 0, width, Height()});
}

bool ToolbarWindow::CanTakeFocus() const {
    return lclWindow && IsWindowVisible(lclWindow) && NextEnabled(-1, 1) >= 0;
}

int ToolbarWindow::NextEnabled(int from, int step) const {
    const auto count = static_cast<int>(lclItems.size());
    for (int i = from + step; i >= 0 && i < count; i += step) {
        const auto& item = lclItems[static_cast<std::size_t>(i)];
        if (item.enabled && item.visible && item.kind != CommandKind::Separator) return i;
    }
    return -1;
}

void ToolbarWindow::MoveHot(int step) {
    const int hot = static_cast<int>(SendMessageW(lclWindow, TB_GETHOTITEM, 0, 0));
    const int wanted = NextEnabled(hot, step);
    if (wanted >= 0) SendMessageW(lclWindow, TB_SETHOTITEM, static_cast<WPARAM>(wanted), 0);
}

bool ToolbarWindow::UsesKey(WPARAM key) const {
    return key == VK_LEFT || key == VK_RIGHT || key == VK_HOME || key == VK_END ||
           key == VK_SPACE || key == VK_RETURN || key == VK_DOWN;
}

bool ToolbarWindow::Key(WPARAM key) {
    const int hot = static_cast<int>(SendMessageW(lclWindow, TB_GETHOTITEM, 0, 0));
    switch (key) {
    case VK_LEFT: MoveHot(-1); return true;
    case VK_RIGHT: MoveHot(1); return true;
    case VK_HOME:
    case VK_END: {
        const int edge = key == VK_HOME ? NextEnabled(-1, 1)
                                        : NextEnabled(static_cast<int>(lclItems.size()), -1);
        SendMessageW(lclWindow, TB_SETHOTITEM, static_cast<WPARAM>(edge), 0);
        return true;
    }
    case VK_DOWN: Drop(firstCommand + hot); return true;
    case VK_SPACE:
    case VK_RETURN:
        if (hot >= 0) Command(firstCommand + hot);
        return true;
    default: return false;
    }
}

void ToolbarWindow::Command(int id) {
    const auto* item = ItemOf(id);
    if (!item) return;
    const auto clicked = *item; // the items may be others afterwards
    lclSource.ButtonClicked(clicked.name);
    if (clicked.kind != CommandKind::Toggle || !lclWindow) return;
    ShowButtons();
    // As its state is, not as the click left it.
    if (const auto* shown = ItemOf(id)) WriteState(id, *shown);
}

void ToolbarWindow::Drop(int id) {
    const auto* item = ItemOf(id);
    if (item && item->kind == CommandKind::Owner) Command(id);
    if (item && item->kind == CommandKind::Split) lclSource.ButtonDropped(std::string(item->name));
}

std::optional<std::size_t> ToolbarWindow::ShowMenu(const PopupMenu& menu, std::string_view button) {
    RECT place{};
    const int command = CommandOf(button);
    SendMessageW(lclWindow, TB_GETRECT, static_cast<WPARAM>(command),
                 reinterpret_cast<LPARAM>(&place));
    MapWindowPoints(lclWindow, nullptr, reinterpret_cast<POINT*>(&place), 2);
    SendMessageW(lclWindow, TB_PRESSBUTTON, static_cast<WPARAM>(command), MAKELPARAM(TRUE, 0));
    const auto chosen = TrackMenu(GetParent(lclWindow), menu, place.left, place.bottom);
    if (lclWindow) SendMessageW(lclWindow, TB_PRESSBUTTON, static_cast<WPARAM>(command), 0);
    return chosen;
}

LRESULT ToolbarWindow::Notified(NMHDR& header) {
    switch (header.code) {
    case TBN_DROPDOWN: Drop(reinterpret_cast<NMTOOLBARW&>(header).iItem); return TBDDRET_DEFAULT;
    case TBN_GETINFOTIPW: {
        auto& tip = reinterpret_cast<NMTBGETINFOTIPW&>(header);
        const auto index = static_cast<std::size_t>(tip.iItem - firstCommand);
        if (index >= lclTooltips.size() || tip.cchTextMax < 1) return 0;
        const auto length = std::min<std::size_t>(lclTooltips[index].size(),
                                                  static_cast<std::size_t>(tip.cchTextMax) - 1);
        lclTooltips[index].copy(tip.pszText, length);
        tip.pszText[length] = L'\0';
        // Asked before it shows; a toolbar makes its tips as late.
        HideTipUnderMenus(reinterpret_cast<HWND>(SendMessageW(lclWindow, TB_GETTOOLTIPS, 0, 0)));
        return 0;
    }
    default: return 0;
    }
}

LRESULT CALLBACK ToolbarWindow::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    const platform::win32::OwnCall call;
    auto* const self = reinterpret_cast<ToolbarWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != WM_NCDESTROY) return self->Handle(window, message, w, l);
    const auto own = self->lclOwnProcedure;
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own));
    return CallWindowProcW(own, window, message, w, l);
}

LRESULT ToolbarWindow::Handle(HWND window, UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_KEYDOWN:
        if (Key(w)) return 0;
        break;
    case WM_CHAR: return 0; // the keys above are all it knows
    case WM_SETFOCUS:
        CallWindowProcW(lclOwnProcedure, window, message, w, l);
        SendMessageW(lclWindow, TB_SETHOTITEM, static_cast<WPARAM>(NextEnabled(-1, 1)), 0);
        return 0;
    case WM_KILLFOCUS: SendMessageW(lclWindow, TB_SETHOTITEM, static_cast<WPARAM>(-1), 0); break;
    case WM_GETDLGCODE: return DLGC_WANTARROWS;
    default: break;
    }
    return CallWindowProcW(lclOwnProcedure, window, message, w, l);
}

void ToolbarWindow::Draw(HDC device, const RECT& place, int dpi,
                         const std::vector<ToolbarItem>& items) {
    const int size = Scaled(iconUnits, dpi);
    const auto images = PicturesOf(PictureSet::Buttons, size);
    int left = place.left + Scaled(6, dpi);
    for (const auto& item : items) {
        if (!item.visible || item.picture.empty()) continue;
        ImageList_Draw(images->Handle(), images->Index(item.picture), device, left,
                       place.top + Scaled(4, dpi), ILD_NORMAL);
        left += size + Scaled(10, dpi);
    }
}

} // namespace kavidex::controls::win32
