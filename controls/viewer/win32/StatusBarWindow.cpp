#include "controls/viewer/win32/StatusBarWindow.h"

#include <commctrl.h>

#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TrackMenu.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

enum Panel { pagePanel, hintPanel, zoomPanel, panelCount };

TOOLINFOW HintTool(HWND window) {
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.hwnd = window;
    tool.uId = hintPanel;
    return tool;
}

} // namespace

HWND StatusBarWindow::Create(HWND parent, int id) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    lclWindow =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"",
                        WS_CHILD | WS_VISIBLE | CCS_NORESIZE | CCS_NOPARENTALIGN | CCS_NODIVIDER, 0,
                        0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                        platform::win32::OwnModule(), nullptr);
    return lclWindow;
}

// Our own, where there is a hint: the bar's tips come only where a text is cut off.
void StatusBarWindow::CreateTips() {
    lclTips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0,
                              0, 0, 0, lclWindow, nullptr, platform::win32::OwnModule(), nullptr);
    HideTipUnderMenus(lclTips);
    TOOLINFOW tool = HintTool(lclWindow);
    tool.uFlags = TTF_SUBCLASS;
    tool.lpszText = lclTip.data();
    SendMessageW(lclTips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    Arrange();
}

void StatusBarWindow::Forget() {
    lclWindow = lclTips = nullptr;
    lclTexts = {};
    lclTip.clear();
}

void StatusBarWindow::Show(const StatusTexts& texts) {
    if (!lclWindow) return;
    const std::string* panels[panelCount] = {&texts.page, &texts.hint, &texts.zoom};
    for (int i = 0; i < panelCount; ++i)
        if (auto text = ToWide(*panels[i]); text != lclTexts[static_cast<std::size_t>(i)]) {
            auto& shown = lclTexts[static_cast<std::size_t>(i)] = std::move(text);
            SendMessageW(lclWindow, SB_SETTEXTW, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(shown.c_str()));
        }
    if (ToWide(texts.hintTip) == lclTip) return;
    lclTip = ToWide(texts.hintTip);
    if (!lclTips) return CreateTips();
    TOOLINFOW tool = HintTool(lclWindow);
    tool.lpszText = lclTip.data();
    SendMessageW(lclTips, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

void StatusBarWindow::BuildLook(int dpi, HFONT font) {
    lclDpi = dpi;
    SendMessageW(lclWindow, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    Arrange();
}

int StatusBarWindow::Height() const {
    const auto font = reinterpret_cast<HFONT>(SendMessageW(lclWindow, WM_GETFONT, 0, 0));
    return LineHeight(lclWindow, font) + Scaled(8, lclDpi);
}

void StatusBarWindow::Place(const RECT& place) {
    Put(lclWindow, place);
    Arrange();
}

int StatusBarWindow::Needed(int panel) const {
    wchar_t text[512] = L"";
    if (LOWORD(SendMessageW(lclWindow, SB_GETTEXTLENGTHW, static_cast<WPARAM>(panel), 0)) <
        std::size(text))
        SendMessageW(lclWindow, SB_GETTEXTW, static_cast<WPARAM>(panel),
                     reinterpret_cast<LPARAM>(text));
    const auto font = reinterpret_cast<HFONT>(SendMessageW(lclWindow, WM_GETFONT, 0, 0));
    HDC device = GetDC(lclWindow);
    const HGDIOBJ before = font ? SelectObject(device, font) : nullptr;
    SIZE size{};
    GetTextExtentPoint32W(device, text, lstrlenW(text), &size);
    if (before) SelectObject(device, before);
    ReleaseDC(lclWindow, device);
    return size.cx + Scaled(10, lclDpi);
}

// The zoom has a fixed room, the page one too as long as the hint is whole; in less the page keeps
// what it needs.
void StatusBarWindow::Arrange() {
    RECT area{};
    GetClientRect(lclWindow, &area);
    const int zoom = Scaled(60, lclDpi);
    const int hintEnd = std::max<int>(0, area.right - zoom);
    const int page =
        std::max(std::min(Scaled(250, lclDpi), hintEnd - Needed(hintPanel)), Needed(pagePanel));
    const int ends[panelCount] = {std::min(page, hintEnd), hintEnd, area.right};
    SendMessageW(lclWindow, SB_SETPARTS, panelCount, reinterpret_cast<LPARAM>(ends));
    if (!lclTips) return;
    TOOLINFOW tool = HintTool(lclWindow);
    tool.rect = {ends[pagePanel], 0, hintEnd, area.bottom};
    SendMessageW(lclTips, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
}

bool StatusBarWindow::HintActivated(const NMHDR& header) const {
    return lclWindow && header.hwndFrom == lclWindow && header.code == NM_DBLCLK &&
           reinterpret_cast<const NMMOUSE&>(header).dwItemSpec == hintPanel;
}

} // namespace kavidex::controls::win32
