// The window that holds the scanning control, "Tessaro.ctrlScan".
#pragma once

#include <windows.h>

#include "controls/common/win32/OwnWindow.h"
#include "controls/intake/ScanPanel.h"
#include "controls/intake/win32/ScanObjects.h"
#include "platform/win32/ComPtr.h"

namespace kavidex::platform::win32 {
class ControlSite;
}

namespace kavidex::controls::win32 {

class ScanWindow final : public OwnWindow {
public:
    ScanWindow(const platform::Workstation& workstation, const ScanObjects& objects);
    ~ScanWindow() override;

    // Once the window is there. Throws platform::Error when the control is not installed or
    // refuses.
    void Open(const ScanSetup& setup);
    void Configure(const ScanSetup& setup) const;

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC, const RECT&) const override {}

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void CloseSite();

    const platform::Workstation& lclWorkstation;
    const ScanObjects& lclObjects;
    platform::win32::ComPtr<platform::win32::ControlSite> lclSite;
};

} // namespace kavidex::controls::win32
