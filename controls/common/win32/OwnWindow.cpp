#include "controls/common/win32/OwnWindow.h"

#include "controls/common/win32/Look.h"
#include "controls/common/win32/TrackMenu.h"

namespace kavidex::controls::win32 {

void OwnWindow::Destroy() {
    if (!lclWindow) return;
    EndMenuOf(lclWindow);
    DestroyWindow(lclWindow);
}

void OwnWindow::Place(const RECT& place) {
    if (lclWindow) Put(lclWindow, place);
}

bool OwnWindow::HasFocus() const {
    const HWND focus = GetFocus();
    return lclWindow && focus && (focus == lclWindow || IsChild(lclWindow, focus));
}

} // namespace kavidex::controls::win32
