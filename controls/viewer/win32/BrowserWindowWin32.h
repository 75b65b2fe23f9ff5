// The window around the web browser control. What it shows was not made by us: no script, control
// or applet in it runs, nothing is fetched or downloaded, and no link leads away from it.
#pragma once

#include <windows.h>

#include <string>

#include "controls/common/win32/OwnWindow.h"
#include "controls/viewer/browser/BrowserPane.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

class BrowserWindowWin32 final : public OwnWindow, public BrowserWindow {
public:
    BrowserWindowWin32(BrowserPane& logic, const platform::Workstation& workstation)
        : lclLogic(logic), lclWorkstation(workstation) {}
    ~BrowserWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    void Navigate(const std::string& path, std::string_view method) override;
    void Print() override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    bool Open();
    void Close();
    void Event(const platform::win32::SiteEvent& event);
    void Arrived();
    void Fail(const std::string& reason);

    BrowserPane& lclLogic;
    const platform::Workstation& lclWorkstation;
    platform::win32::ControlSite* lclSite = nullptr;
    bool lclArriving = false; // navigated, and not yet told that it is there
};

} // namespace kavidex::controls::win32
