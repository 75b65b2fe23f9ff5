// What the OLE side needs of a control's window, whichever control it is.
#pragma once

#include <windows.h>

namespace kavidex::controls::win32 {

class ControlWindow {
public:
    virtual ~ControlWindow() = default; // destroys the window when it still exists

    // A child of `parent` in its client coordinates. Null when Windows refuses.
    virtual HWND Create(HWND parent, const RECT& place) = 0;
    virtual void Destroy() = 0;
    virtual HWND Handle() const = 0; // null while there is no window

    virtual void Place(const RECT& place) = 0;
    // Gives the focus to the part of the control that had it last, or to its first.
    virtual void TakeFocus() = 0;
    // True when the control used the key; everything else belongs to the host.
    virtual bool TranslateKey(const MSG& message) = 0;
    // Draws the control without a window (design time, printing, metafiles).
    virtual void Draw(HDC device, const RECT& place) const = 0;
    virtual bool HasFocus() const = 0;
};

} // namespace kavidex::controls::win32
