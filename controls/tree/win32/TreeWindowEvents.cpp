// What the native tree and the user's hands tell, decoded into calls of the logic.
#include <windowsx.h>

#include <vector>

#include "controls/common/win32/Look.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

constexpr UINT_PTR tmrExpand = 1, tmrScroll = 2;
constexpr UINT hoverMilliseconds = 700, scrollMilliseconds = 80;
constexpr int longestDescription = 255; // of the database's column

std::int16_t ShiftState() {
    return static_cast<std::int16_t>((GetKeyState(VK_SHIFT) < 0 ? 1 : 0) |
                                     (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
                                     (GetKeyState(VK_MENU) < 0 ? 4 : 0));
}

} // namespace

LRESULT TreeWindowWin32::Notified(NMHDR& header) {
    if (header.hwndFrom != lclTree || header.idFrom == 0) return 0;
    const auto& tree = reinterpret_cast<const NMTREEVIEWW&>(header);
    switch (header.code) {
    case TVN_SELCHANGEDW:
        if (!lclQuiet) lclLogic.NodeSelected(static_cast<std::int32_t>(tree.itemNew.lParam));
        return 0;
    case TVN_ITEMEXPANDEDW:
        ShowExpandedImage(tree.itemNew.hItem, tree.action == TVE_EXPAND);
        return 0;
    case TVN_BEGINLABELEDITW:
        return !BeginLabelEdit(reinterpret_cast<const NMTVDISPINFOW&>(header));
    case TVN_ENDLABELEDITW:
        EndLabelEdit(reinterpret_cast<const NMTVDISPINFOW&>(header));
        return FALSE; // the logic has set the text
    case TVN_GETINFOTIPW: {
        auto& tip = reinterpret_cast<NMTVGETINFOTIPW&>(header);
        const auto text =
            platform::win32::ToWide(lclLogic.ToolTip(static_cast<std::int32_t>(tip.lParam)));
        if (tip.pszText && tip.cchTextMax > 0) lstrcpynW(tip.pszText, text.c_str(), tip.cchTextMax);
        return 0;
    }
    case TVN_BEGINDRAGW:
        TreeView_SelectItem(lclTree, tree.itemNew.hItem);
        lclLogic.Drag(static_cast<std::int32_t>(tree.itemNew.lParam));
        return 0;
    case TVN_KEYDOWN: {
        const auto key = reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey;
        if (key == VK_SPACE && lclCheckBoxes)
            PostMessageW(lclWindow, WM_APP, 0,
                         reinterpret_cast<LPARAM>(TreeView_GetSelection(lclTree)));
        const auto shift = ShiftState();
        return lclLogic.CommandKey(key, shift & 2, shift & 1);
    }
    case NM_CLICK: ClickedAt(false); return 0;
    case NM_DBLCLK: ClickedAt(true); return 0;
    case NM_RETURN: lclLogic.NodeActivated(IdOf(TreeView_GetSelection(lclTree))); return 1;
    case NM_CUSTOMDRAW: return CustomDraw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    default: return 0;
    }
}

// Collected items look selected, beside the one that the tree marks itself.
LRESULT TreeWindowWin32::CustomDraw(NMTVCUSTOMDRAW& draw) const {
    if (lclCheckBoxes || !lclLogic.HasCollected()) return CDRF_DODEFAULT;
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT &&
        lclLogic.IsCollected(static_cast<std::int32_t>(draw.nmcd.lItemlParam))) {
        draw.clrText = GetSysColor(COLOR_HIGHLIGHTTEXT);
        draw.clrTextBk = GetSysColor(COLOR_HIGHLIGHT);
    }
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

void TreeWindowWin32::ClickedAt(bool doubleClick) {
    const DWORD position = GetMessagePos();
    UINT flags = 0;
    const HTREEITEM item = HitTest({GET_X_LPARAM(position), GET_Y_LPARAM(position)}, &flags);
    if (doubleClick) {
        if (item && (flags & TVHT_ONITEM)) lclLogic.NodeActivated(IdOf(item));
        return;
    }
    // The box is ticked only after this notification.
    if (item && (flags & TVHT_ONITEMSTATEICON))
        PostMessageW(lclWindow, WM_APP, 0, reinterpret_cast<LPARAM>(item));
    else if (!lclCheckBoxes)
        lclLogic.ClearSelectedItems();
    lclLogic.Click.Raise();
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
    auto key = static_cast<std::int16_t>(w);
    switch (message) {
    case WM_LBUTTONDOWN:
        MouseEvent(message, w, l);
        if ((w & MK_CONTROL) && !lclCheckBoxes) {
            POINT point{GET_X_LPARAM(l), GET_Y_LPARAM(l)};
            ClientToScreen(tree, &point);
            UINT flags = 0;
            if (const auto item = HitTest(point, &flags); item && (flags & TVHT_ONITEM)) {
                ::SetFocus(tree);
                lclLogic.NodeToggled(IdOf(item));
                return 0;
            }
        }
        break;
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MOUSEMOVE: MouseEvent(message, w, l); break;
    case WM_KEYDOWN:
        lclLogic.KeyDown.Raise(key, ShiftState());
        if (key == 0) return 0;
        if (key == VK_MULTIPLY) {
            ExpandBelow(TreeView_GetSelection(tree));
            return 0;
        }
        break;
    case WM_SYSKEYDOWN:
        // Not every native tree passes this key on to where it becomes a menu.
        if (w == VK_F10 && GetKeyState(VK_SHIFT) < 0) {
            OpenContextMenu(-1);
            return 0;
        }
        break;
    case WM_KEYUP: lclLogic.KeyUp.Raise(key, ShiftState()); break;
    case WM_CHAR:
        lclLogic.KeyPress.Raise(key);
        if (key == 0 || key == VK_RETURN || key == VK_ESCAPE) return 0; // the tree would beep
        break;
    default: break;
    }
    return CallWindowProcW(lclNativeTree, tree, message, w, l);
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

std::int32_t TreeWindowWin32::Drag(std::string_view text, std::int32_t allowed) {
    if (GetKeyState(VK_LBUTTON) >= 0) return drop::none; // it would be dropped where it lies
    DropData data;
    data.hasText = true;
    data.text = text;
    return win32::Drag(data, allowed, lclTree,
                       {[&] {
                            std::int16_t format = CF_TEXT;
                            lclLogic.DragDataAsked.Raise(data, format);
                        },
                        [this](std::int32_t& effect, bool& pointers) {
                            lclLogic.DragFeedback.Raise(effect, pointers);
                        }});
}

std::int32_t TreeWindowWin32::DragMoved(DragState state, const DropData& data,
                                        const DropPlace& place) {
    const POINT point{place.x, place.y};
    const HTREEITEM item = state == DragState::Leave ? nullptr : HitTest(point);
    lclDragPoint = point;
    if (item != lclHovered) {
        lclHovered = item;
        KillTimer(lclWindow, tmrExpand);
        if (item) SetTimer(lclWindow, tmrExpand, hoverMilliseconds, nullptr);
    }
    if (state == DragState::Enter) SetTimer(lclWindow, tmrScroll, scrollMilliseconds, nullptr);
    if (state == DragState::Leave) StopDragTimers();
    const auto effect = lclLogic.DragOver(state, data, IdOf(item));
    TreeView_SelectDropTarget(lclTree, effect == drop::none ? nullptr : item);
    return effect;
}

std::int32_t TreeWindowWin32::DragDropped(const DropData& data, const DropPlace& place) {
    StopDragTimers();
    const auto target = IdOf(HitTest({place.x, place.y}));
    TreeView_SelectDropTarget(lclTree, nullptr);
    const auto effect = lclLogic.Dropped(data, target);
    // A drag that was still on its way while the drop was handled marks its folder again.
    if (lclTree) TreeView_SelectDropTarget(lclTree, nullptr);
    return effect;
}

void TreeWindowWin32::DragTimer(UINT_PTR timer) {
    if (timer == tmrExpand) {
        KillTimer(lclWindow, tmrExpand);
        const auto node = reinterpret_cast<NodeHandle>(lclHovered);
        if (!lclHovered || IsExpanded(node) || !TreeView_GetChild(lclTree, lclHovered)) return;
        Expand(node, true);
        lclLogic.HoverExpanded(IdOf(lclHovered));
    } else if (timer == tmrScroll) {
        RECT area{};
        GetWindowRect(lclTree, &area);
        if (!PtInRect(&area, lclDragPoint)) return;
        const int edge = Scaled(20, lclDpi);
        if (lclDragPoint.y < area.top + edge)
            SendMessageW(lclTree, WM_VSCROLL, SB_LINEUP, 0);
        else if (lclDragPoint.y > area.bottom - edge)
            SendMessageW(lclTree, WM_VSCROLL, SB_LINEDOWN, 0);
    }
}

void TreeWindowWin32::StopDragTimers() {
    KillTimer(lclWindow, tmrExpand);
    KillTimer(lclWindow, tmrScroll);
    lclHovered = nullptr;
}

// The control as it stands without its window: the label, the tree's frame and its first rows.
void TreeWindowWin32::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    const HFONT font = MakeFont(lclFace, dpi);
    const HGDIOBJ old = SelectObject(device, font);
    const int saved = SaveDC(device);
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    const int size = Scaled(16, dpi);
    const int line = std::max<int>(metrics.tmHeight + Scaled(2, dpi), size + Scaled(2, dpi));
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(device, TRANSPARENT);
    constexpr UINT oneLine = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
    if (lclLogic.StatusBarVisible()) {
        RECT label{area.left + Scaled(4, dpi), area.top, area.right, area.top + line};
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        DrawTextW(device, platform::win32::ToWide(lclLogic.StatusText()).c_str(), -1, &label,
                  oneLine);
        area.top = label.bottom;
    }
    DrawEdge(device, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    FillRect(device, &area, GetSysColorBrush(COLOR_WINDOW));
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    IconStore images;
    images.Build(dpi);
    int top = area.top + Scaled(2, dpi);
    for (const auto& row : lclLogic.FirstRows((area.bottom - area.top) / line)) {
        int image = images.Index(row.imageKey);
        if (image < 0 && images.AddFileIcon(row.imageKey, row.imageKey))
            image = images.Index(row.imageKey);
        const int left = area.left + Scaled(4, dpi) + row.depth * Scaled(19, dpi);
        ImageList_Draw(images.Handle(), image < 0 ? images.Index("unknown") : image, device, left,
                       top + (line - size) / 2, ILD_TRANSPARENT);
        RECT text{left + size + Scaled(4, dpi), top, area.right, top + line};
        DrawTextW(device, platform::win32::ToWide(row.text).c_str(), -1, &text, oneLine);
        top += line;
    }
    RestoreDC(device, saved);
    SelectObject(device, old);
    DeleteObject(font);
}

} // namespace kavidex::controls::win32
