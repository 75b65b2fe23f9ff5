// The window of a control that shows nothing where it stands: a plain field that takes the focus.
#pragma once

#include <string>

#include <windows.h>

#include "controls/common/win32/OwnWindow.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

class PlaceholderWindow final : public OwnWindow {
public:
    // `name` is drawn while the host is being designed.
    PlaceholderWindow(std::wstring name, const platform::Workstation& workstation)
        : lclName(std::move(name)), lclWorkstation(workstation) {}
    ~PlaceholderWindow() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override { ::SetFocus(lclWindow); }
    bool TranslateKey(const MSG&) override { return false; }
    void Draw(HDC device, const RECT& place) const override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l) {
        return DefWindowProcW(lclWindow, message, w, l);
    }

private:
    std::wstring lclName;
    const platform::Workstation& lclWorkstation;
};

} // namespace kavidex::controls::win32
