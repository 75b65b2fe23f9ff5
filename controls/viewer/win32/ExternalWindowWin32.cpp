#include "controls/viewer/win32/ExternalWindowWin32.h"

#include <algorithm>
#include <vector>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TrackMenu.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "platform/win32/ActivationScope.h"
#include "platform/win32/OwnCall.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

constexpr int twips = 1440; // to the inch

// The screen's own resolution, in which all windows of this process are counted.
int ScreenDpi() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi;
}

std::int32_t ToTwips(LONG pixels) { return MulDiv(pixels, twips, ScreenDpi()); }
LONG ToPixels(std::int32_t length) { return MulDiv(length, ScreenDpi(), twips); }

BOOL CALLBACK AddMonitor(HMONITOR monitor, HDC, RECT*, LPARAM list) {
    auto& areas = *reinterpret_cast<std::vector<ScreenArea>*>(list);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(monitor, &info)) return TRUE;
    const RECT& work = info.rcWork;
    const ScreenArea area{ToTwips(work.left), ToTwips(work.top), ToTwips(work.right),
                          ToTwips(work.bottom)};
    areas.insert(info.dwFlags & MONITORINFOF_PRIMARY ? areas.begin() : areas.end(), area);
    return TRUE;
}

} // namespace

ViewerFormMaker ExternalWindows(const platform::Workstation& workstation) {
    return [&workstation](frmViewer& form) -> std::unique_ptr<ViewerFormWindow> {
        std::vector<ScreenArea> monitors;
        EnumDisplayMonitors(nullptr, nullptr, AddMonitor, reinterpret_cast<LPARAM>(&monitors));
        const auto place = form.StartPlace(monitors);
        const auto least = LeastSize(place);
        auto window = std::make_unique<ExternalWindowWin32>(
            form, workstation, SIZE{ToPixels(least.width), ToPixels(least.height)});
        const RECT pixels{ToPixels(place.left), ToPixels(place.top),
                          ToPixels(place.left + place.width), ToPixels(place.top + place.height)};
        if (!window->Create(nullptr, pixels)) return nullptr;
        return window;
    };
}

ExternalWindowWin32::ExternalWindowWin32(frmViewer& logic, const platform::Workstation& workstation,
                                         SIZE least)
    : lclLogic(logic), lclWorkstation(workstation), lclLeast(least),
      lclHook([this](const MSG& message) {
          return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST &&
                 TranslateKey(message);
      }) {}

HWND ExternalWindowWin32::Create(HWND, const RECT& place) {
    const platform::win32::ActivationScope scope;
    WindowOf<ExternalWindowWin32>::Create(
        *this, lclWindow, L"KavidexExternalViewer", L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
        WS_EX_CONTROLPARENT | WS_EX_APPWINDOW, place, nullptr, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclViewer = MakeViewerWindow(lclLogic.Viewer(), lclWorkstation);
    RECT area{};
    GetClientRect(lclWindow, &area);
    if (!lclViewer->Create(lclWindow, area)) {
        Destroy();
        return nullptr;
    }
    CaptionChanged();
    return lclWindow;
}

void ExternalWindowWin32::CaptionChanged() {
    if (!lclWindow) return;
    SetWindowTextW(lclWindow, ToWide(lclLogic.Caption()).c_str());
    BuildMenu();
}

void ExternalWindowWin32::BuildMenu() {
    lclMenu = lclLogic.Menu();
    const HMENU before = GetMenu(lclWindow), bar = CreateMenu();
    FillMenu(bar, lclMenu);
    SetMenu(lclWindow, bar);
    if (before) DestroyMenu(before);
}

void ExternalWindowWin32::Show() {
    if (!lclWindow) return;
    if (IsIconic(lclWindow)) ShowWindow(lclWindow, SW_RESTORE);
    SetWindowPos(lclWindow, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void ExternalWindowWin32::SetFocus() {
    Show();
    SetForegroundWindow(lclWindow);
    TakeFocus();
}

void ExternalWindowWin32::TakeFocus() {
    if (lclViewer) lclViewer->TakeFocus();
}

// As it stands when it is neither maximised nor minimised.
ViewerPlace ExternalWindowWin32::Place() const {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    RECT place{};
    GetWindowRect(lclWindow, &place);
    if ((IsIconic(lclWindow) || IsZoomed(lclWindow)) && GetWindowPlacement(lclWindow, &placement))
        place = placement.rcNormalPosition;
    return {ToTwips(place.top), ToTwips(place.left), ToTwips(place.bottom - place.top),
            ToTwips(place.right - place.left)};
}

void ExternalWindowWin32::Close() {
    if (lclWindow) SendMessageW(lclWindow, WM_CLOSE, 0, 0);
}

void ExternalWindowWin32::CloseWhenDue() {
    platform::win32::AfterOwnCalls([form = lclLogic.weak_from_this()] {
        if (const auto alive = form.lock()) alive->CloseIfDue();
    });
}

bool ExternalWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus() || !lclViewer) return false;
    if (lclViewer->TranslateKey(message)) return true;
    if (message.message != WM_KEYDOWN || message.wParam != VK_TAB || GetKeyState(VK_CONTROL) < 0)
        return false;
    ::SetFocus(lclWindow); // around it goes again
    return true;
}

LRESULT ExternalWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE:
        if (lclViewer) lclViewer->Place({0, 0, LOWORD(l), HIWORD(l)});
        return 0;
    case WM_GETMINMAXINFO: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        auto& limits = *reinterpret_cast<MINMAXINFO*>(l);
        limits.ptMinTrackSize.x = std::max(limits.ptMinTrackSize.x, lclLeast.cx);
        limits.ptMinTrackSize.y = std::max(limits.ptMinTrackSize.y, lclLeast.cy);
        return result;
    }
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_ACTIVATE: // messages while it is active belong to it
        if (LOWORD(w) != WA_INACTIVE) platform::win32::SetHost(lclWindow);
        return DefWindowProcW(lclWindow, message, w, l);
    case WM_COMMAND:
        if (l == 0 && LOWORD(w) > 0 && LOWORD(w) <= lclMenu.size())
            lclLogic.MenuChosen(lclMenu[LOWORD(w) - 1U]);
        return 0;
    case WM_CLOSE: {
        const auto alive = lclLogic.shared_from_this(); // and this with it
        if (!lclLogic.MayClose()) return 0;
        Destroy();
        return 0;
    }
    case WM_DESTROY:
        platform::win32::DropHost(lclWindow);
        lclViewer.reset();
        lclLogic.Closed();
        return 0;
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

} // namespace kavidex::controls::win32
