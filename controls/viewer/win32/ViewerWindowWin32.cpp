#include "controls/viewer/win32/ViewerWindowWin32.h"

#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TabStops.h"
#include "controls/common/win32/TrackMenu.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "controls/viewer/win32/PartWindows.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

enum Id { toolbarId = 1, nothingId, statusId };
constexpr UINT_PTR idleTimer = 1;
constexpr DWORD idleShare = 25; // milliseconds of work before messages are looked at again

} // namespace

std::unique_ptr<ControlWindow> MakeViewerWindow(ctlViewer& logic,
                                                const platform::Workstation& workstation) {
    return std::make_unique<ViewerWindowWin32>(logic, workstation);
}

ViewerWindowWin32::ViewerWindowWin32(ctlViewer& logic, const platform::Workstation& workstation)
    : lclLogic(logic), lclWorkstation(workstation), lclToolbar(logic),
      lclForms(workstation, [this] { return lclWindow; }) {}

HWND ViewerWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<ViewerWindowWin32>::Create(*this, lclWindow, L"KavidexViewer", L"",
                                        WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                        WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclNothing = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_NOPREFIX | SS_CENTER, 0, 0, 0, 0,
                                 lclWindow, reinterpret_cast<HMENU>(nothingId),
                                 platform::win32::OwnModule(), nullptr);
    if (!lclToolbar.Create(lclWindow, toolbarId) || !lclNothing ||
        !lclStatusBar.Create(lclWindow, statusId)) {
        Destroy();
        return nullptr;
    }
    BuildLook();
    lclLogic.AttachWindow(this);
    return lclWindow;
}

// --- What shows
// -----------------------------------------------------------------------------------

void ViewerWindowWin32::ContentChanged() {
    if (!lclWindow) return;
    lclToolbar.ShowButtons();
    lclStatusBar.Show(lclLogic.Status());
    ShowText(lclNothing, ToWide(lclLogic.NothingSelected()));
    ShowParts();
}

void ViewerWindowWin32::ShowParts() {
    const bool hadFocus = HasFocus();
    const auto shown = lclLogic.Parts();
    for (const auto& row : PartTable()) {
        auto& part = lclParts[static_cast<std::size_t>(row.part)];
        if (shown.Has(row.part)) {
            if (!part) part = row.make(lclLogic, lclWorkstation);
            if (!part->Handle() && part->Create(lclWindow, {}))
                EnableWindow(part->Handle(), lclLogic.Enabled());
        } else if (part && !row.keep) {
            part.reset();
        }
    }
    Layout();
    for (const auto& row : PartTable())
        if (const auto& part = lclParts[static_cast<std::size_t>(row.part)]; part && part->Handle())
            ShowWindow(part->Handle(), shown.Has(row.part) ? SW_SHOWNA : SW_HIDE);
    ShowWindow(lclNothing, shown.Empty() ? SW_SHOWNA : SW_HIDE);
    if (hadFocus && !(GetFocus() && IsWindowVisible(GetFocus()))) TakeFocus();
}

void ViewerWindowWin32::Layout() {
    if (!lclWindow || !lclStatusBar.Handle()) return;
    RECT area{};
    GetClientRect(lclWindow, &area);
    lclToolbar.Place(area.right);
    area.top = std::min<LONG>(area.bottom, lclToolbar.Height());
    RECT status = area;
    status.top = std::max<LONG>(area.top, area.bottom - lclStatusBar.Height());
    lclStatusBar.Place(status);
    area.bottom = status.top;
    const int gap = Scaled(6, lclDpi);
    const int top = std::max<int>(area.top, (area.top + area.bottom - 3 * lclLine) / 2);
    Put(lclNothing, {gap, top, std::max<LONG>(gap, area.right - gap), top + 3 * lclLine});
    InvalidateRect(lclNothing, nullptr, TRUE); // its lines break and centre anew
    const auto shown = lclLogic.Parts();
    for (const auto& row : PartTable()) {
        const auto& part = lclParts[static_cast<std::size_t>(row.part)];
        if (!part || !shown.Has(row.part)) continue;
        RECT place = area;
        if (row.height) {
            place.bottom =
                std::min<LONG>(area.bottom, area.top + row.height(lclLogic, area.right, lclDpi));
            area.top = place.bottom;
        }
        part->Place(place);
    }
}

bool ViewerWindowWin32::OwnColours() const {
    return lclLogic.BackColor() != lclLogic.ForeColor() && !HighContrast();
}

LRESULT ViewerWindowWin32::Colours(HDC device) const {
    if (!lclBack.Get()) {
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        SetBkColor(device, GetSysColor(COLOR_BTNFACE));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
    }
    SetTextColor(device, ColourOf(static_cast<std::uint32_t>(lclLogic.ForeColor())));
    SetBkColor(device, ColourOf(static_cast<std::uint32_t>(lclLogic.BackColor())));
    return reinterpret_cast<LRESULT>(lclBack.Get());
}

void ViewerWindowWin32::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    const HFONT font = MakeFont(lclLogic.Font(), lclDpi);
    SendMessageW(lclNothing, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    lclStatusBar.BuildLook(lclDpi, font);
    lclFont.Reset(font);
    const bool own = OwnColours() && lclLogic.BackStyle() != 0;
    lclBack.Reset(own ? CreateSolidBrush(ColourOf(static_cast<std::uint32_t>(lclLogic.BackColor())))
                      : nullptr);
    lclLine = LineHeight(lclWindow, font);
    lclToolbar.BuildLook(lclDpi);
    Layout();
    InvalidateRect(lclWindow, nullptr, TRUE);
}

void ViewerWindowWin32::AppearanceChanged() {
    if (!lclWindow) return;
    const auto style = GetWindowLongPtrW(lclWindow, GWL_STYLE);
    const auto wanted = lclLogic.BorderStyle() != 0 ? style | WS_BORDER : style & ~WS_BORDER;
    if (style != wanted) {
        SetWindowLongPtrW(lclWindow, GWL_STYLE, wanted);
        SetWindowPos(lclWindow, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }
    EnableWindow(lclToolbar.Handle(), lclLogic.Enabled());
    for (const auto& part : lclParts)
        if (part && part->Handle()) EnableWindow(part->Handle(), lclLogic.Enabled());
    BuildLook();
}

std::optional<std::size_t> ViewerWindowWin32::ShowMenuAt(const PopupMenu& menu, int x, int y) {
    return lclWindow ? TrackMenu(lclWindow, menu, x, y) : std::nullopt;
}

// --- Work between messages
// ------------------------------------------------------------------------

void ViewerWindowWin32::WantIdle() {
    // A timer's message comes only when no other is there.
    if (lclWindow) SetTimer(lclWindow, idleTimer, USER_TIMER_MINIMUM, nullptr);
}

void ViewerWindowWin32::Work() {
    if (lclWorking) return; // a question of the work lets messages through
    lclWorking = true;
    const DWORD start = GetTickCount();
    bool more = true;
    try {
        while (more && GetTickCount() - start < idleShare &&
               HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT)) == 0)
            more = lclLogic.Idle();
    } catch (...) {
        lclWorking = false;
        if (lclWindow) KillTimer(lclWindow, idleTimer);
        throw;
    }
    lclWorking = false;
    if (!more && lclWindow) KillTimer(lclWindow, idleTimer);
}

// --- Focus and keys
// -------------------------------------------------------------------------------

ControlWindow* ViewerWindowWin32::WindowOfFocus() const {
    for (const auto& part : lclParts)
        if (part && part->HasFocus()) return part.get();
    return nullptr;
}

void ViewerWindowWin32::TakeFocus() {
    if (!lclWindow || (HasFocus() && GetFocus() != lclWindow && IsWindowVisible(GetFocus())))
        return;
    std::vector<HWND> stops;
    CollectStops(lclWindow, stops);
    if (GetKeyState(VK_TAB) < 0 && GetKeyState(VK_MENU) >= 0 && !stops.empty())
        ::SetFocus(GetKeyState(VK_SHIFT) < 0 ? stops.back() : stops.front());
    else if (std::find(stops.begin(), stops.end(), lclLastFocus) != stops.end())
        ::SetFocus(lclLastFocus);
    else if (stops.size() > 1) // what is shown, before the toolbar
        ::SetFocus(stops.front() == lclToolbar.Handle() ? stops[1] : stops.front());
    else if (!stops.empty())
        ::SetFocus(stops.front());
    else
        ::SetFocus(lclWindow);
}

bool ViewerWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus()) return false;
    if (GetFocus() != lclWindow) lclLastFocus = GetFocus();
    if (auto* part = WindowOfFocus(); part && part->TranslateKey(message)) return true;
    return message.message == WM_KEYDOWN && Key(message);
}

bool ViewerWindowWin32::Key(const MSG& message) {
    const bool control = GetKeyState(VK_CONTROL) < 0, alt = GetKeyState(VK_MENU) < 0,
               shift = GetKeyState(VK_SHIFT) < 0;
    if (message.wParam == VK_TAB && !control && !alt) {
        std::vector<HWND> stops;
        CollectStops(lclWindow, stops);
        if (StepFocus(stops, shift)) return true;
        lclLastFocus = nullptr; // coming back starts anew
        return false;
    }
    if (GetFocus() == lclToolbar.Handle() && !control && !alt &&
        lclToolbar.UsesKey(message.wParam)) {
        DispatchMessageW(&message);
        return true;
    }
    return lclLogic.CommandKey({static_cast<int>(message.wParam), control, shift, alt});
}

// --- Messages
// -------------------------------------------------------------------------------------

LRESULT ViewerWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_TIMER:
        if (w == idleTimer) Work();
        return 0;
    case WM_COMMAND:
        if (lclToolbar.Handle() && reinterpret_cast<HWND>(l) == lclToolbar.Handle())
            lclToolbar.Command(LOWORD(w));
        return 0;
    case WM_NOTIFY: {
        auto& header = *reinterpret_cast<NMHDR*>(l);
        if (lclStatusBar.HintActivated(header)) {
            lclLogic.HintActivated();
            return 0;
        }
        return lclToolbar.Notified(header);
    }
    case WM_CTLCOLORSTATIC: return Colours(reinterpret_cast<HDC>(w));
    case WM_ERASEBKGND: {
        RECT area{};
        GetClientRect(lclWindow, &area);
        FillRect(reinterpret_cast<HDC>(w), &area,
                 lclBack.Get() ? lclBack.Get() : GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        if (!lclToolbar.Handle()) return 0;
        SendMessageW(lclToolbar.Handle(), message, w, l);
        SendMessageW(lclStatusBar.Handle(), message, w, l);
        BuildLook();
        if (message != 0x02E3) // that one reaches every window by itself
            for (const auto& part : lclParts)
                if (part && part->Handle()) SendMessageW(part->Handle(), message, w, l);
        return 0;
    case WM_DESTROY:
        KillTimer(lclWindow, idleTimer);
        lclLogic.AttachWindow(nullptr);
        return 0;
    case WM_NCDESTROY: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        lclToolbar.Forget();
        lclStatusBar.Forget();
        lclFont.Reset();
        lclBack.Reset();
        lclNothing = lclLastFocus = nullptr;
        return result;
    }
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

void ViewerWindowWin32::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    ToolbarWindow::Draw(device, area, dpi, lclLogic.Toolbar());
    area.top = std::min<LONG>(area.bottom, area.top + Scaled(32, dpi));
    const auto shown = lclLogic.Parts();
    for (const auto& row : PartTable()) {
        if (!shown.Has(row.part)) continue;
        RECT part = area;
        if (row.height) {
            part.bottom = std::min<LONG>(
                area.bottom, area.top + row.height(lclLogic, area.right - area.left, dpi));
            area.top = part.bottom;
        }
        row.make(lclLogic, lclWorkstation)->Draw(device, part);
    }
    if (!shown.Empty()) return;
    GdiObject<HFONT> font;
    font.Reset(MakeFont(lclLogic.Font(), dpi));
    const HGDIOBJ before = SelectObject(device, font.Get());
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
    InflateRect(&area, -Scaled(6, dpi), -Scaled(6, dpi));
    DrawTextW(device, ToWide(lclLogic.NothingSelected()).c_str(), -1, &area,
              DT_NOPREFIX | DT_CENTER | DT_WORDBREAK);
    SelectObject(device, before);
}

} // namespace kavidex::controls::win32
