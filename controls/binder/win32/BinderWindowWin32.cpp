#include "controls/binder/win32/BinderWindowWin32.h"

#include <algorithm>

#include "controls/binder/ctrlCorrespondence.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/common/win32/Look.h"
#include "controls/common/win32/TabStops.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/forms/win32/ControlPane.h"
#include "controls/forms/win32/FormWindow.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "controls/viewer/win32/ExternalWindowWin32.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "platform/Error.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int toolbarId = 1;

} // namespace

std::unique_ptr<ControlWindow> MakeBinderWindow(ctrlCorrespondence& logic,
                                                const platform::Workstation& workstation,
                                                ScanObjects objects) {
    return std::make_unique<BinderWindowWin32>(logic, workstation, std::move(objects));
}

BinderWindowWin32::BinderWindowWin32(ctrlCorrespondence& logic,
                                     const platform::Workstation& workstation, ScanObjects objects)
    : lclLogic(logic), lclWorkstation(workstation), lclToolbar(logic),
      lclSplitter(logic.SplitPanel(), workstation), lclScanObjects(std::move(objects)),
      lclSpCheckList(logic.spCheckList(), workstation) {
    lclLogic.ExtViewer().SetWindowMaker(ExternalWindows(workstation));
}

HWND BinderWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<BinderWindowWin32>::Create(*this, lclWindow, L"KavidexBinder", L"",
                                        WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                        WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclChecklist.reset();
    lclLogic.Checklist().presenter = [this] { return &lclForms; };
    lclTree = MakeTreeWindow(lclLogic.treCorr(), lclWorkstation);
    lclPanel = MakeViewerWindow(lclLogic.Viewer(), lclWorkstation);
    if (!lclToolbar.Create(lclWindow, toolbarId) || !lclSplitter.Create(lclWindow, L"Splitter") ||
        !lclSplitter.SetPanels(lclTree.get(), lclPanel.get())) {
        Destroy();
        return nullptr;
    }
    lclListDrops.Register(lclPanel->Handle(), *this, lclWorkstation);
    lclDpi = DpiOf(lclWindow);
    lclToolbar.BuildLook(lclDpi);
    lclLogic.AttachWindow(this);
    return lclWindow;
}

void BinderWindowWin32::ToolbarChanged() {
    const int before = lclToolbar.Height();
    lclToolbar.ShowButtons();
    if (lclToolbar.Height() != before) Layout(); // it has another row, or one less
}

void BinderWindowWin32::Layout() {
    if (!lclWindow || !lclSplitter.Handle()) return;
    RECT area;
    GetClientRect(lclWindow, &area);
    const bool toolbar = lclLogic.ToolbarVisible();
    if (!toolbar && GetFocus() == lclToolbar.Handle()) lclTree->TakeFocus();
    ShowWindow(lclToolbar.Handle(), toolbar ? SW_SHOWNA : SW_HIDE);
    if (toolbar) {
        lclToolbar.Place(area.right);
        area.top = std::min<LONG>(area.bottom, lclToolbar.Height());
    }
    // Where the user left the bar, perhaps in another dossier meanwhile.
    auto& splitter = lclLogic.SplitPanel();
    if (!splitter.Moving() && splitter.Snapped() == SnapSide::None &&
        splitter.Position() != lclLogic.SplitterPosition())
        splitter.SetPosition(lclLogic.SplitterPosition());
    ShowChecklist();
    if (lclSpCheckList.Handle())
        lclSpCheckList.Place(area, lclDpi);
    else
        lclSplitter.Place(area, lclDpi);
}

// --- The checklist ------------------------------------------------------------------------------

HWND MainArea::Create(HWND parent, const RECT&) {
    SetParent(lclSplitter.Handle(), parent);
    return lclSplitter.Handle();
}

void MainArea::TakeFocus() {
    std::vector<HWND> stops;
    CollectStops(lclSplitter.Handle(), stops);
    if (!stops.empty()) ::SetFocus(stops.front());
}

bool MainArea::HasFocus() const {
    const HWND focus = GetFocus();
    return focus && (focus == lclSplitter.Handle() || IsChild(lclSplitter.Handle(), focus));
}

void BinderWindowWin32::ShowChecklist() {
    const bool shown = lclLogic.ChecklistShown();
    if (shown && !lclChecklist) {
        lclChecklist =
            std::make_unique<forms::win32::FormWindow>(lclLogic.Checklist().Form(), lclWorkstation);
        if (!lclSpCheckList.Create(lclWindow, L"Splitter") ||
            !lclSpCheckList.SetPanels(&lclMain, lclChecklist.get()))
            throw platform::Error(platform::errors::fail, "There is no window for the checklist.");
    }
    auto& split = lclLogic.spCheckList();
    if (split.Control2Visible() != shown) split.ShowControls(true, shown);
}

bool BinderWindowWin32::ChecklistVisible() const {
    return lclChecklist && lclChecklist->Handle() && IsWindowVisible(lclChecklist->Handle());
}

void BinderWindowWin32::AppearanceChanged() {
    if (!lclWindow) return;
    EnableWindow(lclToolbar.Handle(), lclLogic.Enabled());
    const auto style = GetWindowLongPtrW(lclWindow, GWL_STYLE);
    const auto wanted = lclLogic.BorderStyle() != 0 ? style | WS_BORDER : style & ~WS_BORDER;
    if (style == wanted) return;
    SetWindowLongPtrW(lclWindow, GWL_STYLE, wanted);
    SetWindowPos(lclWindow, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

// --- The scanning control -----------------------------------------------------------------------

ControlWindow& BinderWindowWin32::BesideTree() const {
    return lclScanner ? *lclScanner : *lclPanel;
}

// The viewer goes only once the control is there.
void BinderWindowWin32::OpenScanner(const ScanSetup& setup) {
    auto scanner = std::make_unique<ScanWindow>(lclWorkstation, lclScanObjects);
    RECT place{};
    GetClientRect(lclPanel->Handle(), &place);
    if (!scanner->Create(lclSplitter.Handle(), place))
        throw platform::Error(platform::errors::fail, "There is no window for the control.");
    scanner->Open(setup);
    lclScanner = std::move(scanner);
    lclSplitter.SetPanels(lclTree.get(), lclScanner.get());
    ShowWindow(lclPanel->Handle(), SW_HIDE);
}

void BinderWindowWin32::CloseScanner() {
    if (!lclScanner) return;
    const bool focused = lclScanner->HasFocus();
    const auto scanner = std::move(lclScanner);
    if (lclSplitter.Handle()) lclSplitter.SetPanels(lclTree.get(), lclPanel.get());
    if (focused) lclPanel->TakeFocus(); // a tree that gets the focus selects a folder by itself
}

std::unique_ptr<forms::PaneContent> BinderWindowWin32::MakePane(ctlViewer& viewer) {
    return std::make_unique<forms::win32::ControlPane>(MakeViewerWindow(viewer, lclWorkstation));
}

// --- Drops on the list --------------------------------------------------------------------------

std::int32_t BinderWindowWin32::DragMoved(DragState state, const DropData& data, const DropPlace&) {
    const auto folder = lclLogic.ListedFolder();
    return folder != 0 ? lclLogic.treCorr().DragOver(state, data, folder) : drop::none;
}

std::int32_t BinderWindowWin32::DragDropped(const DropData& data, const DropPlace&) {
    const auto folder = lclLogic.ListedFolder();
    return folder != 0 ? lclLogic.treCorr().Dropped(data, folder) : drop::none;
}

// The scanning control goes with it; the next window begins with the viewer.
void BinderWindowWin32::WindowGoes() {
    CloseScanner();
    lclListDrops.Revoke();
    lclLogic.AttachWindow(nullptr);
    lclLogic.Checklist().presenter = nullptr;
    lclScanner.reset();
}

void BinderWindowWin32::Repaint() {
    RedrawWindow(lclWindow, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void BinderWindowWin32::FocusTree() {
    if (HasFocus() && lclTree) lclTree->TakeFocus(); // never from another window
}

void BinderWindowWin32::FocusViewer() {
    if (HasFocus()) BesideTree().TakeFocus();
}

// --- Focus and keys -----------------------------------------------------------------------------

std::vector<HWND> BinderWindowWin32::Stops() const {
    std::vector<HWND> stops;
    if (lclToolbar.CanTakeFocus() && IsWindowEnabled(lclToolbar.Handle()))
        stops.push_back(lclToolbar.Handle());
    if (IsWindowVisible(lclTree->Handle())) CollectStops(lclTree->Handle(), stops);
    if (lclSplitter.BarTakesFocus()) stops.push_back(lclSplitter.Handle());
    if (IsWindowVisible(BesideTree().Handle())) CollectStops(BesideTree().Handle(), stops);
    if (ChecklistVisible()) {
        if (lclSpCheckList.BarTakesFocus()) stops.push_back(lclSpCheckList.Handle());
        CollectStops(lclChecklist->Handle(), stops);
    }
    return stops;
}

void BinderWindowWin32::TakeFocus() {
    // A click has put the focus where it belongs already.
    if (!lclWindow || (HasFocus() && GetFocus() != lclWindow)) return;
    const auto stops = Stops();
    // Tabbed to: the first stop, or from behind the last.
    if (GetKeyState(VK_TAB) < 0 && GetKeyState(VK_MENU) >= 0 && !stops.empty())
        ::SetFocus(GetKeyState(VK_SHIFT) < 0 ? stops.back() : stops.front());
    else if (std::find(stops.begin(), stops.end(), lclLastFocus) != stops.end())
        ::SetFocus(lclLastFocus);
    else if (IsWindowVisible(lclTree->Handle()))
        lclTree->TakeFocus();
    else if (!stops.empty())
        ::SetFocus(stops.front());
    else
        ::SetFocus(lclWindow);
}

// At either end the key belongs to the host, which moves on to its next control.
bool BinderWindowWin32::TabKey(bool back) {
    const auto stops = Stops();
    const auto at = std::find(stops.begin(), stops.end(), GetFocus());
    if (at == stops.end()) return false;
    if (back ? at == stops.begin() : at + 1 == stops.end()) {
        lclLastFocus = nullptr; // coming back starts anew
        return false;
    }
    ::SetFocus(back ? *(at - 1) : *(at + 1));
    return true;
}

bool BinderWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus()) return false;
    if (GetFocus() != lclWindow) lclLastFocus = GetFocus();
    const bool down = message.message == WM_KEYDOWN;
    const bool plain = GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_MENU) >= 0;
    if (down && plain && message.wParam == VK_TAB) {
        if (GetFocus() == lclWindow) {
            TakeFocus();
            return true;
        }
        return TabKey(GetKeyState(VK_SHIFT) < 0);
    }
    const bool toolbar = GetFocus() == lclToolbar.Handle();
    if (down && plain &&
        ((toolbar && lclToolbar.UsesKey(message.wParam)) ||
         (lclSplitter.BarHasFocus() && lclSplitter.UsesKey(message.wParam)) ||
         (lclSpCheckList.BarHasFocus() && lclSpCheckList.UsesKey(message.wParam)))) {
        DispatchMessageW(&message);
        return true;
    }
    if (ChecklistVisible() && lclChecklist->HasFocus()) return lclChecklist->TranslateKey(message);
    return lclTree->TranslateKey(message) || BesideTree().TranslateKey(message);
}

// --- Messages -----------------------------------------------------------------------------------

LRESULT BinderWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_COMMAND:
        if (reinterpret_cast<HWND>(l) == lclToolbar.Handle()) lclToolbar.Command(LOWORD(w));
        return 0;
    case WM_NOTIFY: {
        auto& header = *reinterpret_cast<NMHDR*>(l);
        if (header.hwndFrom == lclToolbar.Handle() || header.code == TBN_GETINFOTIPW)
            return lclToolbar.Notified(header);
        return 0;
    }
    case WM_PARENTNOTIFY: return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        if (!lclToolbar.Handle()) return 0;
        lclDpi = DpiOf(lclWindow);
        SendMessageW(lclToolbar.Handle(), message, w, l);
        lclToolbar.BuildLook(lclDpi);
        if (message != 0x02E3) // that one reaches every window by itself
            for (const auto* child : {lclTree.get(), lclPanel.get(), lclChecklist.get()})
                if (child && child->Handle()) SendMessageW(child->Handle(), message, w, l);
        Layout();
        return 0;
    case WM_DESTROY: WindowGoes(); return 0;
    case WM_NCDESTROY: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        lclToolbar.Forget();
        lclLastFocus = nullptr;
        return result;
    }
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

void BinderWindowWin32::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    if (lclLogic.ToolbarVisible()) {
        ToolbarWindow::Draw(device, area, dpi, lclLogic.Toolbar());
        area.top = std::min<LONG>(area.bottom, area.top + Scaled(32, dpi));
    }
    if (lclLogic.ChecklistShown()) {
        ctlSplitPanel beside;
        beside.SetPosition(lclLogic.spCheckList().Position());
        beside.SetScale(dpi);
        beside.SetSize(area.right - area.left, area.bottom - area.top);
        const auto box = beside.Panel(1);
        forms::win32::FormWindow(lclLogic.Checklist().Form(), lclWorkstation)
            .Draw(device, {area.left + box.left, area.top + box.top,
                           area.left + box.left + box.width, area.top + box.top + box.height});
        area.right = area.left + beside.Panel(0).width;
    }
    // The same rules as on the screen, in the room that was given.
    const auto& shown = lclLogic.SplitPanel();
    ctlSplitPanel split;
    split.ShowControls(shown.Control1Visible(), shown.Control2Visible());
    split.SetHorizontal(shown.Horizontal());
    split.SetPosition(lclLogic.SplitterPosition());
    split.SetScale(dpi);
    split.SetSize(area.right - area.left, area.bottom - area.top);
    const auto inside = [&](const Box& box) {
        return RECT{area.left + box.left, area.top + box.top, area.left + box.left + box.width,
                    area.top + box.top + box.height};
    };
    if (split.Control1Visible())
        MakeTreeWindow(lclLogic.treCorr(), lclWorkstation)->Draw(device, inside(split.Panel(0)));
    if (split.Control2Visible())
        MakeViewerWindow(lclLogic.Viewer(), lclWorkstation)->Draw(device, inside(split.Panel(1)));
}

} // namespace kavidex::controls::win32
