#include "controls/splitter/win32/SplitWindow.h"

#include <algorithm>

#include <windowsx.h>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"

namespace kavidex::controls::win32 {

HWND SplitWindow::Create(HWND parent, const wchar_t* name) {
    if (lclWindow) return lclWindow;
    WindowOf<SplitWindow>::Create(*this, lclWindow, L"KavidexSplitPanel", name,
                                  WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                  WS_EX_CONTROLPARENT, RECT{}, parent, lclWorkstation);
    if (lclWindow)
        lclChanged = lclLogic.Changed.Subscribe([this] {
            if (lclWindow) InvalidateRect(lclWindow, nullptr, TRUE);
        });
    return lclWindow;
}

bool SplitWindow::SetPanels(ControlWindow* first, ControlWindow* second) {
    // Either would be arranged together with what is no longer there.
    lclLogic.SetControl1(nullptr);
    lclLogic.SetControl2(nullptr);
    ControlWindow* const windows[2] = {first, second};
    for (int i = 0; i < 2; ++i) {
        lclPanels[i].reset();
        lclWindows[i] = windows[i];
        if (!windows[i]) continue;
        if (!windows[i]->Create(lclWindow, RECT{})) return false;
        lclPanels[i] = std::make_unique<Panel>(*windows[i], *this);
    }
    lclLogic.SetControl1(lclPanels[0].get());
    lclLogic.SetControl2(lclPanels[1].get());
    return true;
}

void SplitWindow::Destroy() {
    if (lclWindow) DestroyWindow(lclWindow);
}

void SplitWindow::Place(const RECT& place, int dpi) {
    Put(lclWindow, place);
    lclLogic.SetScale(dpi);
    lclLogic.SetSize(place.right - place.left, place.bottom - place.top);
}

void SplitWindow::Panel::Place(const Box& place) {
    lclWindow.Place({place.left, place.top, place.left + place.width, place.top + place.height});
}

void SplitWindow::Panel::Show(bool visible) {
    if (!lclWindow.Handle()) return;
    if (!visible && lclWindow.HasFocus()) lclSplitter.FocusElsewhere(lclWindow);
    ShowWindow(lclWindow.Handle(), visible ? SW_SHOWNA : SW_HIDE);
}

// A hidden window must not keep the keyboard.
void SplitWindow::FocusElsewhere(const ControlWindow& hidden) {
    for (auto* window : lclWindows)
        if (window && window != &hidden) window->TakeFocus();
}

bool SplitWindow::UsesKey(WPARAM key) const {
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT: return !lclLogic.Horizontal();
    case VK_UP:
    case VK_DOWN: return lclLogic.Horizontal();
    case VK_RETURN: return lclLogic.SnapToEdge();
    case VK_ESCAPE: return lclLogic.Moving();
    default: return false;
    }
}

bool SplitWindow::Key(WPARAM key) {
    if (key == VK_ESCAPE && lclLogic.Moving()) {
        ReleaseCapture();
        return true;
    }
    if (!UsesKey(key)) return false;
    if (key == VK_RETURN) return lclLogic.ToggleSnap();
    return lclLogic.MoveBy(key == VK_LEFT || key == VK_UP ? -1 : 1);
}

LRESULT SplitWindow::Handle(UINT message, WPARAM w, LPARAM l) {
    const int x = GET_X_LPARAM(l), y = GET_Y_LPARAM(l);
    switch (message) {
    case WM_PAINT: Paint(); return 0;
    case WM_LBUTTONDOWN:
        if (!lclLogic.BeginMove(x, y)) return 0;
        SetCapture(lclWindow);
        if (lclLogic.AllowMove()) ::SetFocus(lclWindow);
        return 0;
    case WM_MOUSEMOVE:
        if (lclLogic.Moving()) lclLogic.MoveTo(x, y);
        return 0;
    case WM_LBUTTONUP:
        lclLogic.EndMove();
        if (GetCapture() == lclWindow) ReleaseCapture();
        return 0;
    case WM_LBUTTONDBLCLK:
        if (lclLogic.Bar().Contains(x, y)) lclLogic.ToggleSnap();
        return 0;
    case WM_CAPTURECHANGED: lclLogic.CancelMove(); return 0;
    case WM_KEYDOWN:
        if (Key(w)) return 0;
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: InvalidateRect(lclWindow, nullptr, TRUE); return 0;
    case WM_SETCURSOR: {
        POINT point;
        GetCursorPos(&point);
        ScreenToClient(lclWindow, &point);
        if (reinterpret_cast<HWND>(w) != lclWindow || !lclLogic.AllowMove() ||
            !lclLogic.Bar().Contains(point.x, point.y))
            break;
        SetCursor(LoadCursorW(nullptr, lclLogic.Horizontal() ? IDC_SIZENS : IDC_SIZEWE));
        return TRUE;
    }
    case WM_DESTROY:
        lclChanged.reset();
        lclLogic.SetControl1(nullptr);
        lclLogic.SetControl2(nullptr);
        return 0;
    default: break;
    }
    return DefWindowProcW(lclWindow, message, w, l);
}

void SplitWindow::Paint() {
    PAINTSTRUCT paint;
    const HDC device = BeginPaint(lclWindow, &paint);
    const Box bar = lclLogic.Bar();
    RECT area{bar.left, bar.top, bar.left + bar.width, bar.top + bar.height};
    const auto own =
        static_cast<std::uint32_t>(lclLogic.Moving() ? lclLogic.DragColor() : lclLogic.BackColor());
    const COLORREF colour =
        own ? ColourOf(own) : GetSysColor(lclLogic.Moving() ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
    SetDCBrushColor(device, colour);
    FillRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    // A short line in the middle tells that the bar can be moved.
    if (lclLogic.AllowMove()) {
        const int thick = std::max(1, std::min(bar.width, bar.height) / 3);
        const int length = std::max(bar.width, bar.height) / 12;
        RECT grip = area;
        InflateRect(&grip,
                    lclLogic.Horizontal() ? -(bar.width - length) / 2 : -(bar.width - thick) / 2,
                    lclLogic.Horizontal() ? -(bar.height - thick) / 2 : -(bar.height - length) / 2);
        FillRect(device, &grip, GetSysColorBrush(COLOR_BTNSHADOW));
    }
    if (BarHasFocus()) {
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        SetBkColor(device, colour);
        DrawFocusRect(device, &area);
    }
    EndPaint(lclWindow, &paint);
}

} // namespace kavidex::controls::win32
