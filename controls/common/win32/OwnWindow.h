// The part of a control's window that is the same for every control.
#pragma once

#include "controls/common/win32/ControlWindow.h"

namespace kavidex::controls::win32 {

// The page keys, End, Home and the arrows: what moves within a list or a text.
constexpr bool IsMoveKey(WPARAM key) { return key >= VK_PRIOR && key <= VK_DOWN; }

// A subclass creates `lclWindow` through WindowOf, and calls Destroy in its own destructor: the
// last messages go to it.
class OwnWindow : public ControlWindow {
public:
    void Destroy() final;
    HWND Handle() const final { return lclWindow; }
    void Place(const RECT& place) final;
    bool HasFocus() const final; // it or a window within it

protected:
    HWND lclWindow = nullptr;
};

} // namespace kavidex::controls::win32
