#include "controls/common/win32/ItemTip.h"

#include <commctrl.h>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TrackMenu.h"
#include "platform/win32/Owner.h"

namespace kavidex::controls::win32 {

namespace {

constexpr int widest = 480; // pixels at 96 dpi, then the text wraps

// The size that version 5 of the controls takes as well.
TOOLINFOW ToolOf(HWND window) {
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_SUBCLASS;
    tool.hwnd = window;
    tool.uId = 1;
    return tool;
}

} // namespace

void ItemTip::Attach(HWND window) {
    lclWindow = window;
    lclTip = nullptr;
    lclItem = 0;
}

void ItemTip::Create() {
    lclTip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                             WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                             CW_USEDEFAULT, CW_USEDEFAULT, lclWindow, nullptr,
                             platform::win32::OwnModule(), nullptr);
    HideTipUnderMenus(lclTip);
    auto tool = ToolOf(lclWindow);
    wchar_t none[] = L"";
    tool.lpszText = none;
    SendMessageW(lclTip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(lclTip, TTM_SETMAXTIPWIDTH, 0, Scaled(widest, DpiOf(lclWindow)));
}

void ItemTip::Show(INT_PTR item, const RECT& place, std::wstring text) {
    lclItem = item;
    if (!lclTip && text.empty()) return;
    if (!lclTip) Create();
    auto tool = ToolOf(lclWindow);
    if (!text.empty()) tool.rect = place;
    tool.lpszText = text.data();
    SendMessageW(lclTip, TTM_POP, 0, 0);
    SendMessageW(lclTip, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(lclTip, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace kavidex::controls::win32
