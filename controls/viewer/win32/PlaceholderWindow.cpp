#include "controls/viewer/win32/PlaceholderWindow.h"

#include "controls/common/win32/WindowClass.h"

namespace kavidex::controls::win32 {

HWND PlaceholderWindow::Create(HWND parent, const RECT& place) {
    if (!lclWindow)
        WindowOf<PlaceholderWindow>::Create(*this, lclWindow, L"KavidexPlaceholder", L"",
                                            WS_CHILD | WS_VISIBLE, 0, place, parent,
                                            lclWorkstation);
    return lclWindow;
}

void PlaceholderWindow::Draw(HDC device, const RECT& place) const {
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
    DrawTextW(device, lclName.c_str(), -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

} // namespace kavidex::controls::win32
