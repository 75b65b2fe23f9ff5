// The part of a control's window that is the same for every control.
#pragma once

#include "controls/common/win32/ControlWindow.h"

namespace kavidex::controls::win32 {

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
