#include "controls/viewer/win32/CanvasWindowWin32.h"

#include <windowsx.h>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/win32/BlitPicture.h"
#include "imaging/annotations/win32/GdiTextPainter.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

constexpr int gapUnits = 6;

LPCWSTR PointerOf(MarkEditor::Pointer pointer, bool panning) {
    using Pointer = MarkEditor::Pointer;
    if (panning) return IDC_SIZEALL;
    switch (pointer) {
    case Pointer::Draw: return IDC_CROSS;
    case Pointer::Text: return IDC_IBEAM;
    case Pointer::Move: return IDC_SIZEALL;
    case Pointer::Size: return IDC_SIZENWSE;
    case Pointer::Page: return IDC_HAND;
    default: return IDC_ARROW;
    }
}

} // namespace

CanvasWindowWin32::CanvasWindowWin32(PageCanvas& canvas, const platform::Workstation& workstation)
    : lclCanvas(canvas), lclWorkstation(workstation),
      lclTexts(imaging::annotations::MakeGdiTextPainter()) {}

HWND CanvasWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<CanvasWindowWin32>::Create(*this, lclWindow, L"KavidexPage", L"",
                                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_HSCROLL |
                                            WS_VSCROLL | WS_CLIPSIBLINGS,
                                        0, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclDpi = DpiOf(lclWindow);
    TellRoom();
    lclCanvas.AttachWindow(this);
    return lclWindow;
}

void CanvasWindowWin32::SetName(std::string_view name) {
    if (lclWindow) SetWindowTextW(lclWindow, ToWide(name).c_str());
}

void CanvasWindowWin32::BuildLook(int dpi, HFONT font) {
    lclDpi = dpi;
    lclFont = font;
    TellRoom();
}

void CanvasWindowWin32::Repaint() {
    if (lclWindow) InvalidateRect(lclWindow, nullptr, FALSE);
}

void CanvasWindowWin32::RoomChanged() {
    ShowBars();
    Repaint();
}

// The room is the window with its scroll bars.
void CanvasWindowWin32::TellRoom() {
    RECT whole{};
    GetWindowRect(lclWindow, &whole);
    lclCanvas.SetRoom(whole.right - whole.left, whole.bottom - whole.top,
                      GetSystemMetrics(SM_CXVSCROLL), Scaled(gapUnits, lclDpi));
}

void CanvasWindowWin32::ShowBars() {
    if (!lclWindow || lclQuiet) return;
    lclQuiet = true;
    const auto& room = lclCanvas.Geometry();
    const bool page = lclCanvas.HasPage();
    const struct {
        int bar;
        bool shown;
        int length, page, place;
    } bars[] = {
        {SB_HORZ, page && room.HasHorizontalBar(), room.ContentWidth(), room.Width(), room.Left()},
        {SB_VERT, page && room.HasVerticalBar(), room.ContentHeight(), room.Height(), room.Top()}};
    for (const auto& bar : bars) {
        ShowScrollBar(lclWindow, bar.bar, bar.shown);
        if (!bar.shown) continue;
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
        info.nMax = bar.length - 1;
        info.nPage = static_cast<UINT>(bar.page);
        info.nPos = bar.place;
        SetScrollInfo(lclWindow, bar.bar, &info, TRUE);
    }
    lclQuiet = false;
}

void CanvasWindowWin32::Scrolled(int bar, WPARAM w) {
    const auto& room = lclCanvas.Geometry();
    const bool across = bar == SB_HORZ;
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(lclWindow, bar, &info);
    const int page = across ? room.Width() : room.Height();
    int place = across ? room.Left() : room.Top();
    switch (LOWORD(w)) {
    case SB_LINEUP: place -= page / 12; break;
    case SB_LINEDOWN: place += page / 12; break;
    case SB_PAGEUP: place -= page * 9 / 10; break;
    case SB_PAGEDOWN: place += page * 9 / 10; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: place = info.nTrackPos; break;
    case SB_TOP: place = 0; break;
    case SB_BOTTOM: place = across ? room.ContentWidth() : room.ContentHeight(); break;
    default: return;
    }
    lclCanvas.ScrollTo(across ? place : room.Left(), across ? room.Top() : place);
}

void CanvasWindowWin32::Paint() {
    const BufferedPaint paint(lclWindow);
    const HDC device = paint.Device();
    RECT area = paint.Area();
    FillRect(device, &area, GetSysColorBrush(COLOR_APPWORKSPACE));
    const auto& room = lclCanvas.Geometry();
    if (const auto seen = lclCanvas.See(lclTexts.get()); seen.picture)
        BlitPicture(device, seen.x, seen.y, *seen.picture);
    else if (lclCanvas.HasPage()) {
        RECT page{room.OriginX(), room.OriginY(), room.OriginX() + room.ShownWidth(),
                  room.OriginY() + room.ShownHeight()};
        FillRect(device, &page, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    }
    if (!lclCanvas.Message().empty()) {
        const HGDIOBJ before = lclFont ? SelectObject(device, lclFont) : nullptr;
        const std::wstring text = ToWide(lclCanvas.Message());
        RECT box = area;
        InflateRect(&box, -Scaled(24, lclDpi), -Scaled(24, lclDpi));
        RECT needed = box;
        DrawTextW(device, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        box.bottom = box.top + needed.bottom - needed.top;
        RECT frame = box;
        InflateRect(&frame, Scaled(8, lclDpi), Scaled(8, lclDpi));
        FillRect(device, &frame, GetSysColorBrush(COLOR_INFOBK));
        SetBkMode(device, TRANSPARENT);
        SetTextColor(device, GetSysColor(COLOR_INFOTEXT));
        DrawTextW(device, text.c_str(), -1, &box, DT_WORDBREAK | DT_NOPREFIX);
        if (before) SelectObject(device, before);
    }
    if (GetFocus() == lclWindow) DrawFocusRect(device, &area);
}

void CanvasWindowWin32::Draw(HDC device, const RECT& place) const {
    FillRect(device, &place, GetSysColorBrush(COLOR_APPWORKSPACE));
    int x = 0, y = 0;
    const auto picture =
        lclCanvas.Draw(place.right - place.left, place.bottom - place.top, *lclTexts, x, y);
    BlitPicture(device, place.left + x, place.top + y, picture);
}

bool CanvasWindowWin32::TranslateKey(const MSG& message) {
    if (GetFocus() != lclWindow || message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_APPS) {
        OpenMenu(-1);
        return true;
    }
    return lclCanvas.Key({static_cast<int>(message.wParam), GetKeyState(VK_CONTROL) < 0,
                          GetKeyState(VK_SHIFT) < 0, GetKeyState(VK_MENU) < 0});
}

void CanvasWindowWin32::OpenMenu(LPARAM position) {
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    if (position == -1) {
        point = {Scaled(20, lclDpi), Scaled(20, lclDpi)};
        ClientToScreen(lclWindow, &point);
    }
    lclCanvas.ContextMenu.Raise(point.x, point.y);
}

bool CanvasWindowWin32::ShowPointer() const {
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(lclWindow, &point);
    RECT area{};
    GetClientRect(lclWindow, &area);
    if (!PtInRect(&area, point)) return false;
    SetCursor(LoadCursorW(nullptr,
                          PointerOf(lclCanvas.PointerAt(point.x, point.y), lclCanvas.Panning())));
    return true;
}

LRESULT CanvasWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    const int x = GET_X_LPARAM(l), y = GET_Y_LPARAM(l);
    switch (message) {
    case WM_SIZE:
        if (!lclQuiet) TellRoom();
        return 0;
    case WM_PAINT: Paint(); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_HSCROLL: Scrolled(SB_HORZ, w); return 0;
    case WM_VSCROLL: Scrolled(SB_VERT, w); return 0;
    case WM_MOUSEWHEEL: {
        POINT point{x, y};
        ScreenToClient(lclWindow, &point);
        lclCanvas.Wheel(static_cast<double>(GET_WHEEL_DELTA_WPARAM(w)) / WHEEL_DELTA, point.x,
                        point.y, (w & MK_CONTROL) != 0, (w & MK_SHIFT) != 0);
        return 0;
    }
    case WM_LBUTTONDOWN:
        ::SetFocus(lclWindow);
        SetCapture(lclWindow);
        lclCanvas.PointerDown(x, y);
        ShowPointer();
        return 0;
    case WM_MOUSEMOVE:
        if (GetCapture() == lclWindow) lclCanvas.PointerMoved(x, y);
        return 0;
    case WM_LBUTTONUP:
        if (GetCapture() != lclWindow) return 0;
        lclQuiet = true; // the capture goes because the button is up
        ReleaseCapture();
        lclQuiet = false;
        lclCanvas.PointerUp(x, y);
        return 0;
    case WM_CAPTURECHANGED:
        if (!lclQuiet) lclCanvas.PointerLost();
        return 0;
    case WM_LBUTTONDBLCLK: lclCanvas.DoubleClick(x, y); return 0;
    case WM_RBUTTONDOWN: ::SetFocus(lclWindow); return 0;
    case WM_CONTEXTMENU: OpenMenu(l); return 0;
    case WM_SETCURSOR:
        if (reinterpret_cast<HWND>(w) == lclWindow && LOWORD(l) == HTCLIENT && ShowPointer())
            return TRUE;
        break;
    case WM_GETDLGCODE: return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: Repaint(); return 0;
    case WM_DESTROY: lclCanvas.AttachWindow(nullptr); return 0;
    default: break;
    }
    return DefWindowProcW(lclWindow, message, w, l);
}

} // namespace kavidex::controls::win32
