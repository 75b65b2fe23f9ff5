// The window of frmViewer: a menu, and one document viewer that fills the rest.
#pragma once

#include <memory>

#include <windows.h>

#include "controls/common/win32/MessageHook.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/viewer/external/frmViewer.h"

namespace kavidex::controls::win32 {

class ExternalWindowWin32 final : public OwnWindow, public ViewerFormWindow {
public:
    ExternalWindowWin32(frmViewer& logic, const platform::Workstation& workstation, SIZE least);
    ~ExternalWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC, const RECT&) const override {}

    void Show() override;
    void SetFocus() override;
    void CaptionChanged() override;
    ViewerPlace Place() const override;
    void Close() override;
    void CloseWhenDue() override;

    using OwnWindow::Handle;
    using OwnWindow::Place;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void BuildMenu();

    frmViewer& lclLogic;
    const platform::Workstation& lclWorkstation;
    const SIZE lclLeast; // that the user can make of it
    std::unique_ptr<ControlWindow> lclViewer;
    PopupMenu lclMenu; // as its bar shows it
    MessageHook lclHook;
};

// Null when Windows refuses.
ViewerFormMaker ExternalWindows(const platform::Workstation& workstation);

} // namespace kavidex::controls::win32
