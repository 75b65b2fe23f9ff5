// What the native tree and the user's hands tell, decoded into calls of the logic.
#include <windowsx.h>

#include <vector>

#include "controls/common/win32/Look.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/OwnCall.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int longestDescription = 255; // of the database's column

std::int16_t ShiftState() {
    return static_cast<std::int16_t>((GetKeyState(VK_SHIFT) < 0 ? 1 : 0) |
                                     (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
                                     (GetKeyState(VK_MENU) < 0 ? 4 : 0));
}

} // namespace

LRESULT TreeWindowWin32::Notified(NMHDR& header) {
    if (const auto answer = lclGrid.Notified(header)) {
        if (header.code == NM_CLICK) {
            const auto rows = lclLogic.Grid().Selected();
            if (rows.size() == 1) lclLogic.NodeClicked(rows.front());
            lclLogic.Click.Raise();
        }
        return *answer;
    }
    return header.hwndFrom == lclTree && header.idFrom != 0 ? TreeNotified(header) : 0;
}

LRESULT TreeWindowWin32::TreeNotified(NMHDR& header) {
    const auto& tree = reinterpret_cast<const NMTREEVIEWW&>(header);
    switch (header.code) {
    case TVN_SELCHANGEDW:
        if (!lclQuiet) NodeChanged(tree);
        return 0;
    case TVN_ITEMEXPANDEDW:
        ShowExpandedImage(tree.itemNew.hItem, tree.action == TVE_EXPAND);
        if (!lclQuiet && tree.action == TVE_COLLAPSE)
            lclLogic.NodeCollapsed(static_cast<std::int32_t>(tree.itemNew.lParam));
        return 0;
    case TVN_BEGINLABELEDITW:
        return !BeginLabelEdit(reinterpret_cast<const NMTVDISPINFOW&>(header));
    case TVN_ENDLABELEDITW:
        EndLabelEdit(reinterpret_cast<const NMTVDISPINFOW&>(header));
        return FALSE; // the logic has set the text
    case TVN_BEGINDRAGW: {
        const auto id = static_cast<std::int32_t>(tree.itemNew.lParam);
        if (!lclLogic.IsCollected(id)) TreeView_SelectItem(lclTree, tree.itemNew.hItem);
        DragSoon(id);
        return 0;
    }
    case TVN_KEYDOWN: {
        const auto key = reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey;
        if (key == VK_SPACE && lclCheckBoxes)
            PostMessageW(lclWindow, WM_APP, 0,
                         reinterpret_cast<LPARAM>(TreeView_GetSelection(lclTree)));
        const auto shift = ShiftState();
        return lclLogic.CommandKey(key, shift & 2, shift & 1);
    }
    case NM_CLICK: return ClickedAt(false);
    case NM_DBLCLK: return ClickedAt(true);
    case NM_RETURN: lclLogic.NodeActivated(IdOf(TreeView_GetSelection(lclTree))); return 1;
    case NM_CUSTOMDRAW: return CustomDraw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    default: return 0;
    }
}

void TreeWindowWin32::NodeChanged(const NMTREEVIEWW& change) {
    const auto id = static_cast<std::int32_t>(change.itemNew.lParam);
    // Capitals that search by the first letters hold Shift down too.
    if (lclMoving && !lclCheckBoxes && GetKeyState(VK_SHIFT) < 0)
        lclLogic.SelectedUpTo(id, false);
    else
        lclLogic.NodeSelected(id);
}

// Where nodes are collected, they and only they look selected; the current one has a frame. Not
// every native tree dims what is cut.
LRESULT TreeWindowWin32::CustomDraw(NMTVCUSTOMDRAW& draw) const {
    const bool collecting = !lclCheckBoxes && lclLogic.HasCollected();
    if (!collecting && !lclLogic.ShowsCut()) return CDRF_DODEFAULT;
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
        const auto id = static_cast<std::int32_t>(draw.nmcd.lItemlParam);
        const bool focus = GetFocus() == lclTree, ours = lclOwnColours;
        const bool marked =
            collecting ? lclLogic.IsCollected(id) : (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
        const bool dim = !marked && lclLogic.IsCut(id);
        if (!collecting) {
            if (dim) draw.clrText = GetSysColor(COLOR_GRAYTEXT);
            return CDRF_DODEFAULT;
        }
        if (marked) {
            draw.clrText = GetSysColor(focus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT);
            draw.clrTextBk = GetSysColor(focus ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
        } else {
            draw.clrText = dim    ? GetSysColor(COLOR_GRAYTEXT)
                           : ours ? ColourOf(lclFore)
                                  : GetSysColor(COLOR_WINDOWTEXT);
            draw.clrTextBk = ours ? ColourOf(lclBack) : GetSysColor(COLOR_WINDOW);
        }
        return focus ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT;
    }
    const auto item = reinterpret_cast<HTREEITEM>(draw.nmcd.dwItemSpec);
    RECT place{};
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPOSTPAINT && item == TreeView_GetSelection(lclTree) &&
        TreeView_GetItemRect(lclTree, item, &place, TRUE))
        DrawFocusRect(draw.nmcd.hdc, &place);
    return CDRF_DODEFAULT;
}

bool TreeWindowWin32::BeginLabelEdit(const NMTVDISPINFOW& info) {
    const auto id = static_cast<std::int32_t>(info.item.lParam);
    if (!lclLogic.CanEditLabel(id)) return false;
    const HWND edit = TreeView_GetEditControl(lclTree);
    SendMessageW(edit, EM_LIMITTEXT, longestDescription, 0);
    // The description itself, without what the tree shows with it.
    SetWindowTextW(edit, platform::win32::ToWide(lclLogic.EditText(id)).c_str());
    return true;
}

void TreeWindowWin32::EndLabelEdit(const NMTVDISPINFOW& info) {
    if (info.item.pszText)
        lclLogic.LabelEdited(static_cast<std::int32_t>(info.item.lParam),
                             platform::win32::FromWide(info.item.pszText));
}

// True when the native tree is to do nothing of its own.
bool TreeWindowWin32::ClickedAt(bool doubleClick) {
    const DWORD position = GetMessagePos();
    UINT flags = 0;
    const HTREEITEM item = HitTest({GET_X_LPARAM(position), GET_Y_LPARAM(position)}, &flags);
    if (doubleClick) {
        if (item && (flags & TVHT_ONITEM)) lclLogic.NodeActivated(IdOf(item));
        return false;
    }
    const bool control = lclClickKeys & MK_CONTROL, shift = lclClickKeys & MK_SHIFT;
    const bool label = item && (flags & (TVHT_ONITEMICON | TVHT_ONITEMLABEL));
    const bool many = label && !lclCheckBoxes && (control || shift);
    bool shown = false;
    // The box is ticked only after this notification.
    if (item && (flags & TVHT_ONITEMSTATEICON))
        PostMessageW(lclWindow, WM_APP, 0, reinterpret_cast<LPARAM>(item));
    else if (many && shift)
        lclLogic.SelectedUpTo(IdOf(item), control);
    else if (many)
        lclLogic.NodeToggled(IdOf(item));
    else if (label && item == TreeView_GetSelection(lclTree)) {
        lclLogic.NodeSelected(IdOf(item));        // the native tree sees no change
        shown = lclLogic.NodeClicked(IdOf(item)); // its name is not edited then
    } else if (!lclCheckBoxes && !(flags & TVHT_ONITEMBUTTON))
        lclLogic.ClearSelectedItems();
    lclLogic.Click.Raise();
    return many || shown;
}

void TreeWindowWin32::ReportCheck(HTREEITEM item) {
    if (item && lclCheckBoxes)
        lclLogic.NodeChecked(IdOf(item), TreeView_GetCheckState(lclTree, item) == 1);
}

void TreeWindowWin32::OpenContextMenu(LPARAM position) {
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    HTREEITEM item = nullptr;
    if (position == -1) { // by the keyboard: below the selected node
        item = TreeView_GetSelection(lclTree);
        RECT place{};
        if (item && TreeView_GetItemRect(lclTree, item, &place, TRUE))
            point = {place.left, place.bottom};
        else
            point = {0, 0};
        ClientToScreen(lclTree, &point);
    } else {
        UINT flags = 0;
        item = HitTest(point, &flags);
        if (!(flags & (TVHT_ONITEM | TVHT_ONITEMBUTTON | TVHT_ONITEMINDENT | TVHT_ONITEMRIGHT)))
            item = nullptr;
    }
    lclLogic.ContextMenu(item ? std::optional(IdOf(item)) : std::nullopt, point.x, point.y);
}

LRESULT CALLBACK TreeWindowWin32::TreeProcedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    auto& control = *reinterpret_cast<TreeWindowWin32*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const platform::win32::OwnCall call;
    try {
        return control.HandleTree(message, w, l);
    } catch (const std::exception& error) {
        control.lclWorkstation.log.Write("ctrlTree", error.what());
        return 0;
    }
}

// The deepest folder first, the top closed meanwhile: what is not visible costs no new layout.
void TreeWindowWin32::ExpandBelow(HTREEITEM top) {
    if (!top) return;
    std::vector<HTREEITEM> folders{top};
    for (std::size_t i = 0; i < folders.size(); ++i)
        for (auto child = TreeView_GetChild(lclTree, folders[i]); child;
             child = TreeView_GetNextSibling(lclTree, child))
            if (TreeView_GetChild(lclTree, child)) folders.push_back(child);
    SetRedraw(false);
    Expand(reinterpret_cast<NodeHandle>(top), false);
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
        Expand(reinterpret_cast<NodeHandle>(*folder), true);
    SetRedraw(true);
}

LRESULT TreeWindowWin32::HandleTree(UINT message, WPARAM w, LPARAM l) {
    const HWND tree = lclTree;
    // A click brings the focus with it, and a focused tree without a selection selects its first
    // node: that is not what was clicked.
    if (message == WM_MOUSEACTIVATE || message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN)
        lclByMouse = true;
    if (message == WM_SETFOCUS && (lclByMouse || lclLogic.SelectedItem() != nullptr)) {
        const auto before = TreeView_GetSelection(tree);
        ++lclQuiet;
        const LRESULT result = CallWindowProcW(lclNativeTree, tree, message, w, l);
        if (TreeView_GetSelection(tree) != before) TreeView_SelectItem(tree, before);
        --lclQuiet;
        return result;
    }
    const LRESULT result = TreeMessage(message, w, l);
    if (message == WM_MOUSEACTIVATE || message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN)
        lclByMouse = false;
    return result;
}

LRESULT TreeWindowWin32::TreeMessage(UINT message, WPARAM w, LPARAM l) {
    const HWND tree = lclTree;
    if (ReportInput(message, w, l)) return 0;
    switch (message) {
    case WM_LBUTTONDOWN: lclClickKeys = w; break;
    case WM_MOUSEMOVE: ShowTip(l); break;
    case WM_KEYDOWN: {
        lclKeypad = w == VK_MULTIPLY || w == VK_ADD || w == VK_SUBTRACT;
        if (w == VK_MULTIPLY) {
            ExpandBelow(TreeView_GetSelection(tree));
            return 0;
        }
        if (MoveAlone(w)) return 0;
        lclMoving = IsMoveKey(w);
        const LRESULT result = CallWindowProcW(lclNativeTree, tree, message, w, l);
        lclMoving = false;
        return result;
    }
    case WM_SYSKEYDOWN:
        // Not every native tree passes this key on to where it becomes a menu.
        if (w == VK_F10 && GetKeyState(VK_SHIFT) < 0) {
            OpenContextMenu(-1);
            return 0;
        }
        break;
    case WM_CHAR:
        // The tree would look for such a text, and beep.
        if (w == VK_RETURN || w == VK_ESCAPE || std::exchange(lclKeypad, false)) return 0;
        if (w == VK_SPACE && GetKeyState(VK_CONTROL) < 0) return 0;
        break;
    default: break;
    }
    return CallWindowProcW(lclNativeTree, tree, message, w, l);
}

// Not every native tree asks for the texts of tooltips.
void TreeWindowWin32::ShowTip(LPARAM position) {
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ClientToScreen(lclTree, &point);
    UINT flags = 0;
    auto item = HitTest(point, &flags);
    RECT place{};
    if (!(flags & TVHT_ONITEMLABEL) || !TreeView_GetItemRect(lclTree, item, &place, TRUE))
        item = nullptr;
    lclTip.Over(reinterpret_cast<INT_PTR>(item), place,
                [&] { return platform::win32::ToWide(lclLogic.ToolTip(IdOf(item))); });
}

// With Ctrl the current node moves and leaves the selection, or is taken into it or out of it.
bool TreeWindowWin32::MoveAlone(WPARAM key) {
    if (lclCheckBoxes || GetKeyState(VK_CONTROL) >= 0 || GetKeyState(VK_MENU) < 0) return false;
    const bool shift = GetKeyState(VK_SHIFT) < 0;
    if (key == VK_UP || key == VK_DOWN)
        lclLogic.CurrentStepped(key == VK_UP ? -1 : 1, shift);
    else if (key == VK_SPACE)
        lclLogic.NodeToggled(IdOf(TreeView_GetSelection(lclTree)));
    else
        return false;
    return true;
}

LRESULT CALLBACK TreeWindowWin32::GridProcedure(HWND window, UINT message, WPARAM w, LPARAM l,
                                                UINT_PTR id, DWORD_PTR self) {
    auto& control = *reinterpret_cast<TreeWindowWin32*>(self);
    if (message == WM_NCDESTROY) RemoveWindowSubclass(window, GridProcedure, id);
    const platform::win32::OwnCall call;
    try {
        if (control.ReportInput(message, w, l)) return 0;
    } catch (const std::exception& error) {
        control.lclWorkstation.log.Write("ctrlTree", error.what());
        return 0;
    }
    return DefSubclassProc(window, message, w, l);
}

// To the host; true when it took the key away.
bool TreeWindowWin32::ReportInput(UINT message, WPARAM w, LPARAM l) {
    auto key = static_cast<std::int16_t>(w);
    switch (message) {
    case WM_KEYDOWN: lclLogic.KeyDown.Raise(key, ShiftState()); return key == 0;
    case WM_KEYUP: lclLogic.KeyUp.Raise(key, ShiftState()); return false;
    case WM_CHAR: lclLogic.KeyPress.Raise(key); return key == 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MOUSEMOVE: MouseEvent(message, w, l); return false;
    default: return false;
    }
}

void TreeWindowWin32::MouseEvent(UINT message, WPARAM w, LPARAM l) {
    constexpr float twipsPerInch = 1440;
    const float x = static_cast<float>(GET_X_LPARAM(l)) * twipsPerInch / static_cast<float>(lclDpi);
    const float y = static_cast<float>(GET_Y_LPARAM(l)) * twipsPerInch / static_cast<float>(lclDpi);
    const auto shift = ShiftState();
    const auto held = static_cast<std::int16_t>(
        (w & MK_LBUTTON ? 1 : 0) | (w & MK_RBUTTON ? 2 : 0) | (w & MK_MBUTTON ? 4 : 0));
    switch (message) {
    case WM_LBUTTONDOWN: lclLogic.MouseDown.Raise(1, shift, x, y); break;
    case WM_RBUTTONDOWN: lclLogic.MouseDown.Raise(2, shift, x, y); break;
    case WM_MBUTTONDOWN: lclLogic.MouseDown.Raise(4, shift, x, y); break;
    case WM_LBUTTONUP: lclLogic.MouseUp.Raise(1, shift, x, y); break;
    case WM_RBUTTONUP: lclLogic.MouseUp.Raise(2, shift, x, y); break;
    case WM_MBUTTONUP: lclLogic.MouseUp.Raise(4, shift, x, y); break;
    default: lclLogic.MouseMove.Raise(held, shift, x, y); break;
    }
}

} // namespace kavidex::controls::win32
