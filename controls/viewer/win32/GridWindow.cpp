#include "controls/viewer/win32/GridWindow.h"

#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

enum Id { captionId = 1, listId };

} // namespace

GridWindow::GridWindow(ctlViewer& viewer, const platform::Workstation& workstation)
    : lclViewer(viewer), lclView(viewer.Views().list), lclWorkstation(workstation),
      lclList(lclView.List()) {}

HWND GridWindow::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<GridWindow>::Create(*this, lclWindow, L"KavidexGrid", L"",
                                 WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                 WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclCaption = CreateWindowExW(0, L"STATIC", L"",
                                 WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_LEFTNOWORDWRAP |
                                     SS_ENDELLIPSIS | SS_CENTERIMAGE,
                                 0, 0, 0, 0, lclWindow, reinterpret_cast<HMENU>(captionId),
                                 platform::win32::OwnModule(), nullptr);
    if (!lclCaption || !lclList.Create(lclWindow, listId)) {
        Destroy();
        return nullptr;
    }
    ShowWindow(lclList.Handle(), SW_SHOWNA);
    lclShown = lclView.Shown.Subscribe([this] { ShowCaption(); });
    ShowCaption();
    BuildLook();
    return lclWindow;
}

// The list bears the caption too: that is how it is called when it is read out.
void GridWindow::ShowCaption() {
    ShowText(lclCaption, ToWide(lclView.Caption()));
    lclList.SetName(lclView.Caption());
}

bool GridWindow::TranslateKey(const MSG& message) {
    if (message.hwnd != lclList.Handle() || message.message != WM_KEYDOWN ||
        GetKeyState(VK_MENU) < 0 || !lclList.UsesKey(message.wParam))
        return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

LRESULT GridWindow::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_NOTIFY: return lclList.Notified(*reinterpret_cast<NMHDR*>(l)).value_or(0);
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        SendMessageW(lclList.Handle(), message, w, l);
        BuildLook();
        return 0;
    case WM_DESTROY: lclShown.reset(); return 0;
    case WM_NCDESTROY: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        lclFont.Reset();
        lclBold.Reset();
        lclCaption = nullptr;
        return result;
    }
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

void GridWindow::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    FontFace strong = lclViewer.Font().value_or(FontFace{});
    strong.weight = FW_BOLD;
    const HFONT font = MakeFont(lclViewer.Font(), lclDpi), bold = MakeFont(strong, lclDpi);
    SendMessageW(lclCaption, WM_SETFONT, reinterpret_cast<WPARAM>(bold), TRUE);
    std::optional<COLORREF> back, fore;
    if (lclViewer.BackColor() != lclViewer.ForeColor() && !HighContrast()) {
        back = ColourOf(static_cast<std::uint32_t>(lclViewer.BackColor()));
        fore = ColourOf(static_cast<std::uint32_t>(lclViewer.ForeColor()));
    }
    lclList.BuildLook(lclDpi, font, back, fore);
    lclFont.Reset(font);
    lclBold.Reset(bold);
    lclLine = LineHeight(lclWindow, bold);
    Layout();
}

void GridWindow::Layout() {
    if (!lclWindow || !lclCaption) return;
    RECT area;
    GetClientRect(lclWindow, &area);
    const int gap = Scaled(6, lclDpi);
    Put(lclCaption, {gap, 0, std::max<LONG>(gap, area.right - gap), lclLine + gap});
    area.top = std::min<LONG>(lclLine + gap, area.bottom);
    lclList.Place(area);
}

void GridWindow::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    GdiObject<HFONT> font;
    font.Reset(MakeFont(lclViewer.Font(), dpi));
    const HGDIOBJ before = SelectObject(device, font.Get());
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_WINDOW));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    InflateRect(&area, -Scaled(6, dpi), -Scaled(6, dpi));
    std::string text = lclView.Caption();
    for (std::size_t row = 0; row < std::min<std::size_t>(lclView.List().Count(), 100); ++row)
        text += "\r\n" + lclView.List().Text(row, 0);
    DrawTextW(device, ToWide(text).c_str(), -1, &area, DT_NOPREFIX);
    SelectObject(device, before);
}

} // namespace kavidex::controls::win32
