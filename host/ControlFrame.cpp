#include "host/ControlFrame.h"

#include "platform/Error.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

namespace kavidex::host {

using platform::win32::Late;
using platform::win32::ToWide;
using platform::win32::Variant;

namespace {

constexpr wchar_t className[] = L"KavidexHostControl";

Late Control(const platform::win32::ControlSite& site) {
    return Late(platform::win32::ComPtr<IDispatch>(site.Control()));
}

} // namespace

std::function<bool(MSG&, DWORD)> TabAround(HWND frame) {
    return [frame](MSG& message, DWORD modifiers) {
        constexpr DWORD shift = 1;
        if (message.message != WM_KEYDOWN || message.wParam != VK_TAB || (modifiers & ~shift))
            return false;
        ::SetFocus(frame); // which hands it to the control
        return true;
    };
}

ControlFrame::ControlFrame(HWND owner, const wchar_t* progId, const std::string& title,
                           const platform::win32::ComPtr<IDispatch>& connection,
                           const platform::win32::ComPtr<IDispatch>& rights,
                           std::string saveQuestion)
    : lclSaveQuestion(std::move(saveQuestion)) {
    const HINSTANCE module = GetModuleHandleW(nullptr);
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = module;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    // To X11's window managers a dialog, which they let take the keyboard from its owner.
    lclWindow =
        CreateWindowExW(WS_EX_DLGMODALFRAME, className, ToWide(title).c_str(),
                        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT,
                        MulDiv(780, dpi, 96), MulDiv(500, dpi, 96), owner, nullptr, module, this);
    if (!lclWindow) throw platform::Error(platform::errors::fail, "no window", "kavidex-host");
    try {
        lclSite = new platform::win32::ControlSite(lclWindow, {.keyBack = TabAround(lclWindow)});
        RECT client;
        GetClientRect(lclWindow, &client);
        lclSite->Open(progId, client);
        Control(*lclSite).PutRef(L"UserAuth", {Variant(rights)});
        Control(*lclSite).PutRef(L"DbConnection", {Variant(connection)});
    } catch (...) {
        Close();
        if (lclSite) lclSite->Release();
        throw;
    }
    ShowWindow(lclWindow, SW_SHOW);
    SetForegroundWindow(lclWindow);
    lclSite->Focus();
}

ControlFrame::~ControlFrame() {
    Close();
    lclSite->Release();
}

void ControlFrame::Close() {
    if (lclWindow) DestroyWindow(lclWindow);
}

bool ControlFrame::MayClose() {
    if (!lclWindow) return true;
    const auto control = Control(*lclSite);
    if (!control.Get(L"IsChanged").ToBool()) return true;
    const int answer = MessageBoxW(lclWindow, ToWide(lclSaveQuestion).c_str(), L"Kavidex host",
                                   MB_YESNOCANCEL | MB_ICONQUESTION);
    return answer == IDNO || (answer == IDYES && control.Call(L"Save").ToBool());
}

LRESULT CALLBACK ControlFrame::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(
            window, GWLP_USERDATA,
            reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(l)->lpCreateParams));
    auto* self = reinterpret_cast<ControlFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self || !self->lclSite) return DefWindowProcW(window, message, w, l);
    try {
        return self->Handle(message, w, l);
    } catch (const std::exception& error) {
        MessageBoxW(window, ToWide(error.what()).c_str(), L"Kavidex host", MB_ICONEXCLAMATION);
        return 0;
    }
}

LRESULT ControlFrame::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: {
        RECT client;
        GetClientRect(lclWindow, &client);
        lclSite->Place(client);
        return 0;
    }
    case WM_SETFOCUS: lclSite->Focus(); return 0;
    case WM_CLOSE:
        if (MayClose()) Close();
        return 0;
    case WM_DESTROY:
        lclSite->Close();
        lclWindow = nullptr;
        return 0;
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

} // namespace kavidex::host
