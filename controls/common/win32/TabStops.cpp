#include "controls/common/win32/TabStops.h"

#include <algorithm>

namespace kavidex::controls::win32 {

void CollectStops(HWND parent, std::vector<HWND>& stops) {
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (!IsWindowVisible(child) || !IsWindowEnabled(child)) continue;
        const bool stop = GetWindowLongPtrW(child, GWL_STYLE) & WS_TABSTOP;
        if (stop)
            stops.push_back(child);
        else
            CollectStops(child, stops);
    }
}

bool StepFocus(const std::vector<HWND>& stops, bool back) {
    const auto at = std::find(stops.begin(), stops.end(), GetFocus());
    if (at == stops.end() || (back ? at == stops.begin() : at + 1 == stops.end())) return false;
    ::SetFocus(back ? *(at - 1) : *(at + 1));
    return true;
}

} // namespace kavidex::controls::win32
