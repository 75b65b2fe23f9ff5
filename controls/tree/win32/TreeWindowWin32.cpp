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

constexpr int labelId = 1, treeId = 2;

} // namespace

std::unique_ptr<ControlWindow> MakeTreeWindow(ctrlTree& logic,
                                              const platform::Workstation& workstation) {
    return std::make_unique<TreeWindowWin32>(logic, workstation);
}

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
                            TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_EDITLABELS | TVS_INFOTIP,
                        0, 0, 0, 0, lclWindow, reinterpret_cast<HMENU>(treeId), module, nullptr);
    if (!lclLabel || !lclTree) return false;
    // Not as a subclass of the common controls: that looks its data up at every message, and a fill
    // sends a hundred thousand.
    SetWindowLongPtrW(lclTree, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    lclNativeTree = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(lclTree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TreeProcedure)));
    lclDrops.Register(lclTree, *this, lclWorkstation);
    return true;
}

void TreeWindowWin32::TakeFocus() {
    if (lclTree) ::SetFocus(lclTree);
}

// What the tree uses is handed to it here; all else is the host's.
bool TreeWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus()) return false;
    const bool editing =
        message.hwnd != lclTree && TreeView_GetEditControl(lclTree) == message.hwnd;
    const bool control = GetKeyState(VK_CONTROL) < 0, alt = GetKeyState(VK_MENU) < 0;
    bool ours = false;
    if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
        switch (message.wParam) {
        case VK_MULTIPLY:
        case VK_ADD:
        case VK_SUBTRACT:
        case VK_F2:
        case VK_DELETE:
        case VK_APPS: ours = !alt && !control; break;
        case VK_F10: ours = GetKeyState(VK_SHIFT) < 0; break;
        case VK_SPACE: ours = lclCheckBoxes; break;
        case VK_RETURN: ours = editing || lclLogic.OpenDoubleClick(); break;
        case VK_ESCAPE: ours = editing; break;
        case 'C':
        case 'X':
        case 'V': ours = control && !alt; break;
        default: ours = IsMoveKey(message.wParam) && !alt; break;
        }
        // A label's editor uses every key but the one that leaves the control.
        if (editing) ours = message.wParam != VK_TAB;
    } else if (message.message == WM_CHAR) {
        ours = editing;
    }
    if (!ours) return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
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
    case WM_APP: ReportCheck(reinterpret_cast<HTREEITEM>(l)); return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        if (lclTree) {
            SendMessageW(lclTree, message, w, l);
            BuildLook();
        }
        return 0;
    case WM_DESTROY:
        lclLogic.AttachWindow(nullptr);
        StopDragTimers();
        ++lclQuiet; // what the dying tree tells
        lclDrops.Revoke();
        if (lclTree) TreeView_SetImageList(lclTree, nullptr, TVSIL_NORMAL);
        lclImages.Destroy();
        return 0;
    case WM_NCDESTROY:
        if (lclFont) DeleteObject(std::exchange(lclFont, nullptr));
        if (lclLabelBrush) DeleteObject(std::exchange(lclLabelBrush, nullptr));
        lclTree = lclLabel = nullptr;
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
        HDC device = GetDC(lclLabel);
        const HGDIOBJ old = SelectObject(device, lclFont);
        TEXTMETRICW metrics{};
        GetTextMetricsW(device, &metrics);
        SelectObject(device, old);
        ReleaseDC(lclLabel, device);
        top = metrics.tmHeight + Scaled(6, lclDpi);
        const int indent = Scaled(4, lclDpi);
        MoveWindow(lclLabel, indent, 0, std::max<LONG>(0, area.right - indent), top, TRUE);
    }
    ShowWindow(lclLabel, lclStatusBar ? SW_SHOWNA : SW_HIDE);
    MoveWindow(lclTree, 0, top, area.right, std::max<LONG>(0, area.bottom - top), TRUE);
}

void TreeWindowWin32::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    const HFONT old = std::exchange(lclFont, MakeFont(lclFace, lclDpi));
    for (const HWND child : {lclLabel, lclTree})
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(lclFont), TRUE);
    if (old) DeleteObject(old);
    TreeView_SetImageList(lclTree, nullptr, TVSIL_NORMAL);
    lclImages.Build(lclDpi);
    TreeView_SetImageList(lclTree, lclImages.Handle(), TVSIL_NORMAL);
    SetColours(lclBack, lclFore, lclOpaque);
    Layout();
}

void TreeWindowWin32::SetStatusText(std::string_view text) {
    SetWindowTextW(lclLabel, platform::win32::ToWide(text).c_str());
}

void TreeWindowWin32::ShowStatusBar(bool show) {
    lclStatusBar = show;
    Layout();
}

void TreeWindowWin32::SetColours(std::uint32_t back, std::uint32_t fore, bool opaque) {
    lclBack = back;
    lclFore = fore;
    lclOpaque = opaque;
    // Equal colours (as with a host that saved none) would show nothing: the system's then.
    const bool ours = back != fore && !HighContrast();
    TreeView_SetBkColor(lclTree, ours ? ColourOf(back) : static_cast<COLORREF>(-1));
    TreeView_SetTextColor(lclTree, ours ? ColourOf(fore) : static_cast<COLORREF>(-1));
    if (lclLabelBrush) DeleteObject(std::exchange(lclLabelBrush, nullptr));
    if (ours && opaque) lclLabelBrush = CreateSolidBrush(ColourOf(back));
    InvalidateRect(lclLabel, nullptr, TRUE);
    InvalidateRect(lclWindow, nullptr, TRUE);
}

LRESULT TreeWindowWin32::LabelColours(HDC device) {
    SetTextColor(device, ColourOf(lclFore));
    SetBkColor(device, ColourOf(lclBack));
    return reinterpret_cast<LRESULT>(lclLabelBrush);
}

void TreeWindowWin32::SetFont(const std::optional<FontFace>& font) {
    if (font == lclFace) return;
    lclFace = font;
    BuildLook();
}

void TreeWindowWin32::SetEnabled(bool enabled) {
    EnableWindow(lclTree, enabled);
    EnableWindow(lclLabel, enabled);
}

void TreeWindowWin32::SetBorder(bool border) {
    const auto style = GetWindowLongPtrW(lclWindow, GWL_STYLE);
    const auto wanted = border ? style | WS_BORDER : style & ~static_cast<LONG_PTR>(WS_BORDER);
    if (wanted == style) return;
    SetWindowLongPtrW(lclWindow, GWL_STYLE, wanted);
    SetWindowPos(lclWindow, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

} // namespace kavidex::controls::win32
