// The window itself: making, laying out, keys, looks.
#include "controls/tree/win32/TreeWindowWin32.h"

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int labelId = 1, treeId = 2, gridId = 3, switchId = 4;
constexpr UINT checkMessage = WM_APP, wakeMessage = WM_APP + 1, dragMessage = WM_APP + 2;

} // namespace

std::unique_ptr<ControlWindow> MakeTreeWindow(ctrlTree& logic,
                                              const platform::Workstation& workstation) {
    return std::make_unique<TreeWindowWin32>(logic, workstation);
}

TreeWindowWin32::TreeWindowWin32(ctrlTree& logic, const platform::Workstation& workstation)
    : lclLogic(logic), lclWorkstation(workstation), lclGrid(logic.Grid()) {}

HWND TreeWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    WindowOf<TreeWindowWin32>::Create(*this, lclWindow, L"KavidexTree", L"",
                                      WS_CHILD | WS_CLIPCHILDREN | WS_VISIBLE, WS_EX_CONTROLPARENT,
                                      place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    if (!CreateChildren()) {
        Destroy();
        return nullptr;
    }
    BuildLook();
    AddClipboardFormatListener(lclWindow);
    lclLogic.AttachWindow(this);
    return lclWindow;
}

bool TreeWindowWin32::CreateChildren() {
    const HINSTANCE module = platform::win32::OwnModule();
    // The label comes first: it also names the tree for screen readers.
    lclLabel = CreateWindowExW(
        0, L"STATIC", L"",
        WS_CHILD | WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE,
        0, 0, 0, 0, lclWindow, reinterpret_cast<HMENU>(labelId), module, nullptr);
    lclTree =
        CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                            TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_EDITLABELS | TVS_NOTOOLTIPS,
                        0, 0, 0, 0, lclWindow, reinterpret_cast<HMENU>(treeId), module, nullptr);
    lclSwitch = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 0, 0, lclWindow,
                                reinterpret_cast<HMENU>(switchId), module, nullptr);
    if (!lclLabel || !lclTree || !lclSwitch) return false;
    // Not as a subclass of the common controls: that looks its data up at every message, and a fill
    // sends a hundred thousand.
    SetWindowLongPtrW(lclTree, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    lclNativeTree = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(lclTree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TreeProcedure)));
    lclTip.Attach(lclTree);
    lclDrops.Register(lclTree, *this, lclWorkstation);
    return true;
}

// When it is first shown: few ever look at it.
void TreeWindowWin32::CreateGrid() {
    if (lclGrid.Handle()) return;
    const HWND grid = lclGrid.Create(lclWindow, gridId);
    if (!grid) throw platform::Error(platform::errors::fail, "There is no window for the list.");
    SetWindowSubclass(grid, GridProcedure, 2, reinterpret_cast<DWORD_PTR>(this));
    lclGridDrops.Register(grid, *this, lclWorkstation);
    lclGrid.SetName(lclLogic.StatusText());
    EnableWindow(grid, IsWindowEnabled(lclTree));
}

void TreeWindowWin32::TakeFocus() {
    if (lclTree) ::SetFocus(Shown());
}

void TreeWindowWin32::ShowList(bool list) {
    const bool focus = HasFocus();
    if (list) CreateGrid();
    lclList = list;
    if (list) BuildGridLook();
    Layout();
    if (focus) TakeFocus();
    ShowWindow(list ? lclTree : lclGrid.Handle(), SW_HIDE);
    const auto name = platform::win32::ToWide(ctrlTree::ShownChild(list));
    ++lclQuiet;
    ShowText(lclSwitch, name);
    --lclQuiet;
}

void TreeWindowWin32::SwitchTyped() {
    wchar_t text[64];
    const int length = GetWindowTextW(lclSwitch, text, std::size(text));
    lclLogic.SwitchTyped(platform::win32::FromWide({text, static_cast<std::size_t>(length)}));
}

// Out of the notification: the tree view still uses the item afterwards, which a drop may delete.
void TreeWindowWin32::DragSoon(std::int32_t id) {
    PostMessageW(lclWindow, dragMessage, static_cast<WPARAM>(id), 0);
}

void TreeWindowWin32::WakeSoon() { PostMessageW(lclWindow, wakeMessage, 0, 0); }

// What the tree or the list uses is handed to it here; all else is the host's.
bool TreeWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus()) return false;
    const bool editing =
        message.hwnd != Shown() && (lclList ? lclGrid.IsEditing(message.hwnd)
                                            : TreeView_GetEditControl(lclTree) == message.hwnd);
    bool ours = false;
    if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN)
        // A label's editor uses every key but the one that leaves the control.
        ours = editing ? message.wParam != VK_TAB : UsesKey(message.wParam);
    else if (message.message == WM_CHAR)
        ours = editing;
    if (!ours) return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

bool TreeWindowWin32::UsesKey(WPARAM key) const {
    const bool control = GetKeyState(VK_CONTROL) < 0, shift = GetKeyState(VK_SHIFT) < 0,
               alt = GetKeyState(VK_MENU) < 0;
    if (ctrlTree::HasCommand({static_cast<int>(key), control, shift, alt})) return true;
    switch (key) {
    case VK_MULTIPLY:
    case VK_ADD:
    case VK_SUBTRACT: return !lclList && !alt && !control;
    case VK_APPS: return !alt && !control;
    case VK_F10: return shift;
    case VK_SPACE: return lclCheckBoxes || lclList || control;
    case VK_RETURN: return lclLogic.OpenDoubleClick();
    case 'A': return lclList && control && !alt;
    default: return IsMoveKey(key) && !alt;
    }
}

LRESULT TreeWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    const HWND window = lclWindow;
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_CTLCOLORSTATIC:
        if (lclLabelBrush && reinterpret_cast<HWND>(l) == lclLabel)
            return LabelColours(reinterpret_cast<HDC>(w));
        return DefWindowProcW(window, message, w, l);
    case WM_ERASEBKGND:
        if (lclLabelBrush) {
            RECT area{};
            GetClientRect(window, &area);
            FillRect(reinterpret_cast<HDC>(w), &area, lclLabelBrush);
            return 1;
        }
        return DefWindowProcW(window, message, w, l);
    case WM_NOTIFY: return Notified(*reinterpret_cast<NMHDR*>(l));
    case WM_CONTEXTMENU: OpenContextMenu(l); return 0;
    case WM_TIMER: DragTimer(w); return 0;
    case WM_COMMAND:
        if (LOWORD(w) == switchId && HIWORD(w) == EN_CHANGE && !lclQuiet) SwitchTyped();
        return 0;
    case checkMessage: ReportCheck(reinterpret_cast<HTREEITEM>(l)); return 0;
    case wakeMessage: lclLogic.Woken(); return 0;
    case WM_CLIPBOARDUPDATE: lclLogic.ShowCut(); return 0;
    case dragMessage:
        TreeView_SelectDropTarget(lclTree, nullptr); // some systems mark what a drag starts from
        lclLogic.Drag(static_cast<std::int32_t>(w));
        return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        if (lclTree) {
            SendMessageW(lclTree, message, w, l);
            SendMessageW(lclGrid.Handle(), message, w, l);
            BuildLook();
        }
        return 0;
    case WM_DESTROY:
        RemoveClipboardFormatListener(lclWindow);
        lclLogic.AttachWindow(nullptr);
        StopDragTimers();
        ++lclQuiet; // what the dying tree tells
        lclDrops.Revoke();
        lclGridDrops.Revoke();
        if (lclTree) TreeView_SetImageList(lclTree, nullptr, TVSIL_NORMAL);
        lclImages.Destroy();
        return 0;
    case WM_NCDESTROY:
        if (lclFont) DeleteObject(std::exchange(lclFont, nullptr));
        if (lclLabelBrush) DeleteObject(std::exchange(lclLabelBrush, nullptr));
        lclTree = lclLabel = lclSwitch = nullptr;
        lclQuiet = 0;
        return DefWindowProcW(window, message, w, l);
    default: return DefWindowProcW(window, message, w, l);
    }
}

void TreeWindowWin32::Layout() {
    if (!lclWindow || !lclTree) return;
    RECT area{};
    GetClientRect(lclWindow, &area);
    int top = 0;
    if (lclStatusBar) {
        top = LineHeight(lclLabel, lclFont) + Scaled(6, lclDpi);
        const int indent = Scaled(4, lclDpi);
        Put(lclLabel, {indent, 0, std::max<LONG>(indent, area.right), top});
    }
    ShowWindow(lclLabel, lclStatusBar ? SW_SHOWNA : SW_HIDE);
    const RECT room{0, top, area.right, std::max<LONG>(top, area.bottom)};
    Put(lclTree, room);
    lclGrid.Place(room);
    ShowWindow(Shown(), SW_SHOWNA);
}

} // namespace kavidex::controls::win32
