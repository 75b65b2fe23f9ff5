#include "controls/viewer/win32/ThumbsWindowWin32.h"

#include <windowsx.h>

#include <string>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/exchange/win32/DropTarget.h"
#include "controls/viewer/win32/BlitPicture.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

HWND ThumbsWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    WindowOf<ThumbsWindowWin32>::Create(*this, lclWindow, L"KavidexThumbs", L"",
                                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL |
                                            WS_CLIPSIBLINGS,
                                        0, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    lclDpi = DpiOf(lclWindow);
    TellRoom();
    lclThumbs.AttachWindow(this);
    Repaint();
    return lclWindow;
}

void ThumbsWindowWin32::SetName(std::string_view name) {
    if (lclWindow) SetWindowTextW(lclWindow, platform::win32::ToWide(name).c_str());
}

void ThumbsWindowWin32::BuildLook(int dpi, HFONT font) {
    lclDpi = dpi;
    lclFont = font;
    TellRoom();
    Repaint();
}

void ThumbsWindowWin32::TellRoom() {
    RECT area{};
    GetClientRect(lclWindow, &area);
    lclThumbs.SetRoom(area.right, area.bottom, lclDpi);
}

void ThumbsWindowWin32::Repaint() {
    if (!lclWindow || lclQuiet) return;
    lclQuiet = true;
    RECT area{};
    GetClientRect(lclWindow, &area);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = std::max(0, lclThumbs.ContentHeight() - 1);
    info.nPage = static_cast<UINT>(area.bottom);
    info.nPos = lclThumbs.Top();
    SetScrollInfo(lclWindow, SB_VERT, &info, TRUE);
    InvalidateRect(lclWindow, nullptr, FALSE);
    lclQuiet = false;
}

void ThumbsWindowWin32::Repaint(int page) {
    if (!lclWindow) return;
    const auto cell = lclThumbs.CellOf(page);
    const RECT area{cell.x, cell.y, cell.x + cell.width, cell.y + cell.height};
    InvalidateRect(lclWindow, &area, FALSE);
}

void ThumbsWindowWin32::CurrentChanged() {
    if (lclWindow && HasFocus())
        NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, lclWindow, OBJID_CLIENT, CHILDID_SELF);
}

std::int32_t ThumbsWindowWin32::Drag(const DropData& data) {
    return win32::Drag(data, drop::copy, lclWindow);
}

void ThumbsWindowWin32::PaintCell(HDC device, int page) const {
    const auto cell = lclThumbs.CellOf(page);
    const int side = lclThumbs.PictureSize();
    RECT area{cell.x, cell.y, cell.x + cell.width, cell.y + cell.height};
    const bool selected = lclThumbs.Selected().contains(page);
    const bool strong = selected && GetFocus() == lclWindow;
    if (selected) {
        RECT mark = area;
        InflateRect(&mark, -Scaled(2, lclDpi), -Scaled(2, lclDpi));
        FillRect(device, &mark, GetSysColorBrush(strong ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
    }
    const int left = cell.x + (cell.width - side) / 2, top = cell.y + Scaled(8, lclDpi);
    RECT frame{left, top, left + side, top + side};
    if (const auto* picture = lclThumbs.Picture(page)) {
        const auto width = static_cast<int>(picture->width),
                   height = static_cast<int>(picture->height);
        frame.left += (side - width) / 2;
        frame.top += (side - height) / 2;
        frame.right = frame.left + width;
        frame.bottom = frame.top + height;
        BlitPicture(device, frame.left, frame.top, *picture);
        InflateRect(&frame, 1, 1);
    } else {
        InflateRect(&frame, -side / 8, 0);
        FillRect(device, &frame, GetSysColorBrush(COLOR_WINDOW));
        if (lclThumbs.Failed(page)) {
            SetBkMode(device, TRANSPARENT);
            SetTextColor(device, GetSysColor(COLOR_GRAYTEXT));
            DrawTextW(device, L"?", 1, &frame, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        }
    }
    FrameRect(device, &frame, GetSysColorBrush(COLOR_WINDOWFRAME));
    RECT label{cell.x, cell.y + side + Scaled(10, lclDpi), area.right, area.bottom};
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    const std::wstring number = std::to_wstring(page);
    DrawTextW(device, number.c_str(), -1, &label, DT_CENTER | DT_SINGLELINE);
    if (page == lclThumbs.Current() && GetFocus() == lclWindow) DrawFocusRect(device, &area);
}

void ThumbsWindowWin32::Paint() {
    const BufferedPaint paint(lclWindow);
    const HDC device = paint.Device();
    FillRect(device, &paint.Area(), GetSysColorBrush(COLOR_WINDOW));
    const HGDIOBJ before = lclFont ? SelectObject(device, lclFont) : nullptr;
    for (int page = 1; page <= lclThumbs.Count(); ++page) {
        const auto cell = lclThumbs.CellOf(page);
        if (cell.y >= paint.Dirty().bottom) break;
        if (cell.y + cell.height > paint.Dirty().top) PaintCell(device, page);
    }
    if (before) SelectObject(device, before);
}

bool ThumbsWindowWin32::TranslateKey(const MSG& message) {
    if (GetFocus() != lclWindow || message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_APPS) {
        OpenMenu(-1);
        return true;
    }
    return lclThumbs.Key({static_cast<int>(message.wParam), GetKeyState(VK_CONTROL) < 0,
                          GetKeyState(VK_SHIFT) < 0, GetKeyState(VK_MENU) < 0});
}

void ThumbsWindowWin32::Scrolled(WPARAM w) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS | SIF_PAGE;
    GetScrollInfo(lclWindow, SB_VERT, &info);
    const int page = static_cast<int>(info.nPage);
    int top = lclThumbs.Top();
    switch (LOWORD(w)) {
    case SB_LINEUP: top -= page / 8; break;
    case SB_LINEDOWN: top += page / 8; break;
    case SB_PAGEUP: top -= page; break;
    case SB_PAGEDOWN: top += page; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: top = info.nTrackPos; break;
    case SB_TOP: top = 0; break;
    case SB_BOTTOM: top = lclThumbs.ContentHeight(); break;
    default: return;
    }
    lclThumbs.ScrollTo(top);
}

// What is selected stays so until it is known that nothing is dragged.
void ThumbsWindowWin32::Pressed(int x, int y, WPARAM keys) {
    ::SetFocus(lclWindow);
    const int page = lclThumbs.PageAt(x, y);
    const bool control = (keys & MK_CONTROL) != 0, shift = (keys & MK_SHIFT) != 0;
    const bool plain = !control && !shift;
    if (!plain || !lclThumbs.Selected().contains(page)) lclThumbs.Clicked(page, control, shift);
    POINT point{x, y};
    ClientToScreen(lclWindow, &point);
    if (page != 0 && DragDetect(lclWindow, point)) {
        lclThumbs.DragStarted.Raise();
        return;
    }
    if (plain) lclThumbs.Clicked(page, false, false);
}

void ThumbsWindowWin32::OpenMenu(LPARAM position) {
    POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    if (position == -1) {
        const auto cell = lclThumbs.CellOf(std::max(1, lclThumbs.Current()));
        point = {cell.x + cell.width / 2, cell.y + cell.height / 2};
        ClientToScreen(lclWindow, &point);
    }
    lclThumbs.ContextMenu.Raise(point.x, point.y);
}

LRESULT ThumbsWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    const int x = GET_X_LPARAM(l), y = GET_Y_LPARAM(l);
    switch (message) {
    case WM_SIZE:
        TellRoom();
        Repaint();
        return 0;
    case WM_PAINT: Paint(); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_VSCROLL: Scrolled(w); return 0;
    case WM_MOUSEWHEEL:
        lclThumbs.ScrollTo(lclThumbs.Top() -
                           GET_WHEEL_DELTA_WPARAM(w) * lclThumbs.PictureSize() / WHEEL_DELTA);
        return 0;
    case WM_LBUTTONDOWN: Pressed(x, y, w); return 0;
    case WM_RBUTTONDOWN: {
        ::SetFocus(lclWindow);
        const int page = lclThumbs.PageAt(x, y);
        if (!lclThumbs.Selected().contains(page)) lclThumbs.Clicked(page, false, false);
        return 0;
    }
    case WM_CONTEXTMENU: OpenMenu(l); return 0;
    case WM_GETDLGCODE: return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: InvalidateRect(lclWindow, nullptr, FALSE); return 0;
    case WM_DESTROY: lclThumbs.AttachWindow(nullptr); return 0;
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

} // namespace kavidex::controls::win32
