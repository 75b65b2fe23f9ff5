#include "controls/viewer/win32/BrowserWindowWin32.h"

#include <algorithm>

#include "controls/common/win32/WindowClass.h"
#include "platform/Error.h"
#include "platform/win32/Late.h"

namespace kavidex::controls::win32 {

using platform::win32::ControlSite;
using platform::win32::Late;
using platform::win32::SiteEvent;
using platform::win32::StoreByRef;
using platform::win32::Variant;

namespace {

constexpr wchar_t progId[] = L"Shell.Explorer.2";
constexpr UINT_PTR lateTimer = 1;
constexpr UINT mostWait = 15000; // milliseconds for a file that lies on a slow share

// Asked of whoever holds the control: what it may load and run. Pictures are shown.
constexpr DISPID downloadControl = -5512;
constexpr std::int32_t pictures = 0x10, noScripts = 0x80, noJava = 0x100, noRunControls = 0x200,
                       noLoadControls = 0x400, noFrames = 0x1000, noRefresh = 0x4000,
                       silent = 0x40000000;

// Events of the control, by their ids.
constexpr DISPID beforeNavigate = 250, newWindow = 251, documentComplete = 259, fileDownload = 270,
                 navigateError = 271, newWindow3 = 273;

constexpr std::int32_t printCommand = 6, askFirst = 1;

// By-reference arguments; the last of the declaration comes first.
void Refuse(const SiteEvent& event, UINT fromTheEnd) {
    if (fromTheEnd < event.parameters.cArgs)
        StoreByRef(event.parameters.rgvarg[fromTheEnd], Variant(true));
}

} // namespace

HWND BrowserWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<BrowserWindowWin32>::Create(*this, lclWindow, L"KavidexBrowser", L"",
                                         WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                         WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (lclWindow) lclLogic.AttachWindow(this);
    return lclWindow;
}

bool BrowserWindowWin32::Open() {
    if (lclSite) return true;
    lclSite = new ControlSite(lclWindow, {.event = [this](const SiteEvent& event) { Event(event); },
                                          .ambient = [](DISPID id) -> std::optional<Variant> {
                                              if (id != downloadControl) return std::nullopt;
                                              return Variant(pictures | noScripts | noJava |
                                                             noRunControls | noLoadControls |
                                                             noFrames | noRefresh | silent);
                                          }});
    try {
        RECT area{};
        GetClientRect(lclWindow, &area);
        lclSite->Open(progId, area);
        const Late control{platform::win32::ComPtr<IDispatch>(lclSite->Control())};
        control.Put(L"Silent", {Variant(true)});
        control.Put(L"RegisterAsDropTarget", {Variant(false)});
        return true;
    } catch (const platform::Error& error) {
        lclWorkstation.log.Write("webctl", error.what());
        Close();
        return false;
    }
}

void BrowserWindowWin32::Close() {
    lclArriving = false;
    if (lclWindow) KillTimer(lclWindow, lateTimer);
    if (!lclSite) return;
    lclSite->Close();
    std::exchange(lclSite, nullptr)->Release();
}

void BrowserWindowWin32::Navigate(const std::string& path, std::string_view method) {
    if (!lclWindow) return;
    if (path.empty()) return Close();
    if (!Open()) return Fail("The web browser control cannot be made.");
    lclArriving = true;
    SetTimer(lclWindow, lateTimer, mostWait, nullptr);
    try {
        const Late control{platform::win32::ComPtr<IDispatch>(lclSite->Control())};
        control.Call(method == "Navigate2" ? L"Navigate2" : L"Navigate", {Variant(path)});
    } catch (const platform::Error& error) {
        Fail(error.what());
    }
}

void BrowserWindowWin32::Print() {
    if (!lclSite) return;
    const Late control{platform::win32::ComPtr<IDispatch>(lclSite->Control())};
    control.Call(L"ExecWB", {printCommand, askFirst});
}

void BrowserWindowWin32::Event(const SiteEvent& event) {
    switch (event.id) {
    case beforeNavigate: // (display, url, flags, target, data, headers, Cancel): a link was
                         // followed
        if (!lclArriving) Refuse(event, 0);
        return;
    case newWindow: // (display, Cancel)
        Refuse(event, 0);
        return;
    case newWindow3: // (display, Cancel, flags, context, url)
        Refuse(event, 3);
        return;
    case fileDownload: // (is it shown in place, Cancel): else the user would be asked where to
        if (event.parameters.cArgs > 1 && Variant(event.parameters.rgvarg[1]).ToBool()) return;
        Refuse(event, 0);
        return Fail("The control would download it.");
    case navigateError: return Fail("The control cannot navigate to it.");
    case documentComplete: return Arrived();
    default: return;
    }
}

void BrowserWindowWin32::Arrived() {
    if (!lclArriving || !lclSite) return;
    const Late control{platform::win32::ComPtr<IDispatch>(lclSite->Control())};
    try {
        if (!control.Get(L"Document").ToDispatch()) return Fail("The control shows nothing.");
    } catch (const platform::Error& error) {
        return Fail(error.what());
    }
    lclArriving = false;
    KillTimer(lclWindow, lateTimer);
}

void BrowserWindowWin32::Fail(const std::string& reason) {
    if (!lclArriving && lclSite) return;
    lclArriving = false;
    KillTimer(lclWindow, lateTimer);
    lclLogic.Failed(reason);
}

void BrowserWindowWin32::TakeFocus() {
    if (lclSite) lclSite->Focus();
}

bool BrowserWindowWin32::TranslateKey(const MSG& message) {
    MSG copy = message;
    return lclSite && HasFocus() && lclSite->TranslateKey(copy);
}

LRESULT BrowserWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE:
        if (lclSite) lclSite->Place({0, 0, LOWORD(l), HIWORD(l)});
        return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_TIMER:
        if (w == lateTimer) {
            KillTimer(lclWindow, lateTimer);
            Arrived(); // it may have come without telling so
        }
        return 0;
    case WM_DESTROY:
        lclLogic.AttachWindow(nullptr);
        Close();
        return 0;
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

void BrowserWindowWin32::Draw(HDC device, const RECT& place) const {
    FillRect(device, &place, GetSysColorBrush(COLOR_WINDOW));
}

} // namespace kavidex::controls::win32
