#include "platform/win32/WindowsBusyDialog.h"

#include <algorithm>

#include <commctrl.h>

#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

constexpr wchar_t className[] = L"KavidexBusy";

// Sizes at 96 dots an inch.
constexpr int margin = 14, leastWidth = 300, mostWidth = 460, gap = 10, barHeight = 14;
constexpr int stopHeight = 26, stopWidth = 90;

// Functions of newer Windows versions, null on older ones.
template <class Function>
Function Newer(const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

int DpiOf(HWND window) {
    using GetDpi = UINT(WINAPI*)(HWND);
    if (const auto getDpi = Newer<GetDpi>("GetDpiForWindow"))
        if (const UINT dpi = getDpi(window)) return static_cast<int>(dpi);
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
}

LOGFONTW MessageFont(int dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    using ForDpi = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
    const auto forDpi = Newer<ForDpi>("SystemParametersInfoForDpi");
    if (!forDpi ||
        !forDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi)))
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics.lfMessageFont;
}

RECT AreaToCentreIn(HWND owner) {
    RECT area{};
    if (owner && IsWindowVisible(owner) && !IsIconic(owner) && GetWindowRect(owner, &area))
        return area;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
    return monitor.rcWork;
}

void SetTextIfNew(HWND window, const std::wstring& text) {
    std::wstring old(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    old.resize(
        static_cast<std::size_t>(GetWindowTextW(window, old.data(), static_cast<int>(old.size()))));
    if (old != text) SetWindowTextW(window, text.c_str());
}

} // namespace

LRESULT CALLBACK WindowsBusyDialog::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    auto* self = reinterpret_cast<WindowsBusyDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_CLOSE: return 0; // only the work itself ends it
    case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
    case WM_COMMAND: // as tools for screens press it
        if (self && HIWORD(w) == BN_CLICKED) self->AskToStop();
        return 0;
    case WM_SETTINGCHANGE:
    case 0x02E0: // WM_DPICHANGED, unknown to older headers
        if (self && self->lclText) {
            self->ChooseFont();
            self->Arrange();
        }
        return 0;
    case WM_NCDESTROY: // its owner may go before the work ends
        if (self) self->lclWindow = self->lclText = self->lclBar = nullptr;
        break;
    }
    return DefWindowProcW(window, message, w, l);
}

bool WindowsBusyDialog::Create() {
    const HINSTANCE module = OwnModule();
    WNDCLASSW description{};
    description.lpfnWndProc = &Procedure;
    description.hInstance = module;
    description.hCursor = LoadCursorW(nullptr, IDC_WAIT);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    description.lpszClassName = className;
    if (!RegisterClassW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return false;
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);

    lclWindow =
        CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_DLGMODALFRAME, className, L"",
                        WS_POPUP | WS_CAPTION, 0, 0, 10, 10, Owner(), nullptr, module, nullptr);
    if (!lclWindow) return false;
    SetWindowLongPtrW(lclWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    lclText = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_LEFT | SS_NOPREFIX, 0,
                              0, 1, 1, lclWindow, nullptr, module, nullptr);
    lclBar = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 1, 1, lclWindow,
                             nullptr, module, nullptr);
    ChooseFont();
    Marquee(true);
    return true;
}

void WindowsBusyDialog::ChooseFont() {
    lclDpi = DpiOf(lclWindow);
    lclWidth = 0;
    const LOGFONTW wanted = MessageFont(lclDpi);
    const HFONT font = CreateFontIndirectW(&wanted);
    for (const HWND child : {lclText, lclStop})
        if (child) SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    if (lclFont) DeleteObject(lclFont);
    lclFont = font;
}

// As large as its texts asked for so far, in the middle of the host's window: one that changed with
// each of many texts would jump about.
void WindowsBusyDialog::Arrange() {
    const auto scaled = [this](int size) { return MulDiv(size, lclDpi, 96); };
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(lclText)) + 1, L'\0');
    GetWindowTextW(lclText, text.data(), static_cast<int>(text.size()));
    RECT words{0, 0, scaled(mostWidth), 0};
    const HDC device = GetDC(lclText);
    const HGDIOBJ old = SelectObject(device, lclFont);
    DrawTextW(device, text.c_str(), -1, &words, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(device, old);
    ReleaseDC(lclText, device);

    const int width = std::max<int>({words.right, scaled(leastWidth), lclWidth});
    lclWidth = width;
    const int edge = scaled(margin), barTop = edge + words.bottom + scaled(gap);
    const int stopTop = barTop + scaled(barHeight) + scaled(gap);
    const int bottom = lclStop ? stopTop + scaled(stopHeight) : barTop + scaled(barHeight);
    RECT frame{0, 0, width + 2 * edge, bottom + edge};
    AdjustWindowRectEx(&frame, WS_POPUP | WS_CAPTION, FALSE,
                       WS_EX_NOACTIVATE | WS_EX_DLGMODALFRAME);
    const int frameWidth = frame.right - frame.left, frameHeight = frame.bottom - frame.top;
    const RECT area = AreaToCentreIn(Owner());
    SetWindowPos(lclWindow, nullptr, (area.left + area.right - frameWidth) / 2,
                 (area.top + area.bottom - frameHeight) / 2, frameWidth, frameHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    MoveWindow(lclText, edge, edge, width, words.bottom, TRUE);
    MoveWindow(lclBar, edge, barTop, width, scaled(barHeight), TRUE);
    if (lclStop)
        MoveWindow(lclStop, edge + width - scaled(stopWidth), stopTop, scaled(stopWidth),
                   scaled(stopHeight), TRUE);
}

void WindowsBusyDialog::Marquee(bool on) {
    const LONG_PTR style = GetWindowLongPtrW(lclBar, GWL_STYLE);
    if (((style & PBS_MARQUEE) != 0) == on) return;
    SetWindowLongPtrW(lclBar, GWL_STYLE,
                      on ? style | PBS_MARQUEE : style & ~static_cast<LONG_PTR>(PBS_MARQUEE));
    SendMessageW(lclBar, PBM_SETMARQUEE, on, 40);
}

// Now: while the work runs, painting that waits for a free moment may wait for its end.
void WindowsBusyDialog::Paint() const {
    RedrawWindow(lclWindow, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void WindowsBusyDialog::Show(std::string_view caption, std::string_view text) {
    if (!lclWindow && !Create()) return; // the work itself needs no window
    SetTextIfNew(lclWindow, ToWide(caption));
    SetTextIfNew(lclText, ToWide(text));
    Arrange();
    if (!IsWindowVisible(lclWindow)) ShowWindow(lclWindow, SW_SHOWNOACTIVATE);
    Paint();
}

void WindowsBusyDialog::Progress(int done, int total) {
    if (!lclWindow) return;
    Marquee(total <= 0);
    if (total <= 0) return;
    SendMessageW(lclBar, PBM_SETRANGE32, 0, total);
    SendMessageW(lclBar, PBM_SETPOS, static_cast<WPARAM>(std::clamp(done, 0, total)), 0);
    UpdateWindow(lclBar);
}

void WindowsBusyDialog::OfferStop(std::string_view caption) {
    lclStopAsked = false;
    if (lclStop) DestroyWindow(lclStop);
    lclStop = nullptr;
    if (lclWindow && !caption.empty()) {
        lclStop = CreateWindowExW(0, L"BUTTON", ToWide(caption).c_str(), WS_CHILD | WS_VISIBLE, 0,
                                  0, 1, 1, lclWindow, nullptr, OwnModule(), nullptr);
        if (lclStop) SendMessageW(lclStop, WM_SETFONT, reinterpret_cast<WPARAM>(lclFont), TRUE);
    }
    if (!lclWindow) return;
    Arrange();
    Paint();
}

void WindowsBusyDialog::AskToStop() {
    lclStopAsked = true;
    if (lclStop) EnableWindow(lclStop, FALSE); // asked once is enough; the work ends its step
}

// The button is pressed here and not by its own window, which would take the focus from the host.
void WindowsBusyDialog::TakeInput() {
    if (!lclStop || lclStopAsked) return;
    MSG message{};
    while (PeekMessageW(&message, lclWindow, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
        if (message.hwnd != lclStop) continue;
        if (message.message == WM_LBUTTONDOWN) SendMessageW(lclStop, BM_SETSTATE, TRUE, 0);
        if (message.message != WM_LBUTTONUP) continue;
        SendMessageW(lclStop, BM_SETSTATE, FALSE, 0);
        return AskToStop();
    }
    if (PeekMessageW(&message, nullptr, WM_KEYDOWN, WM_KEYDOWN, PM_NOREMOVE) &&
        message.wParam == VK_ESCAPE) {
        PeekMessageW(&message, nullptr, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE);
        AskToStop();
    }
}

void WindowsBusyDialog::Close() {
    if (lclWindow) DestroyWindow(lclWindow);
    lclWindow = lclStop = nullptr;
    if (lclFont) DeleteObject(lclFont);
    lclFont = nullptr;
    // A class outlives its DLL: left registered, it would name code that is gone.
    UnregisterClassW(className, OwnModule());
}

void WindowsBusyDialog::Pump(bool paintOnly) {
    // A window that asks for painting over and over must not hold the work up.
    constexpr int most = 500;
    constexpr UINT how = PM_REMOVE | PM_QS_PAINT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE;
    TakeInput();
    MSG message{};
    const auto next = [&] {
        if (!paintOnly) return PeekMessageW(&message, nullptr, 0, 0, how);
        return lclWindow && PeekMessageW(&message, lclWindow, 0, 0, how)
                   ? TRUE
                   : PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE);
    };
    for (int i = 0; i < most && next(); ++i) {
        if (message.message == WM_QUIT) { // the host's own loop is to see it
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        DispatchMessageW(&message);
    }
}

} // namespace kavidex::platform::win32
