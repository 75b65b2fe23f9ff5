// The document viewer's window: the toolbar, the stage with the parts that show, the status bar.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include <windows.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/common/win32/ToolbarWindow.h"
#include "controls/forms/win32/WindowsForms.h"
#include "controls/viewer/Part.h"
#include "controls/viewer/ViewerWindow.h"
#include "controls/viewer/win32/StatusBarWindow.h"

namespace kavidex::controls {
class ctlViewer;
}

namespace kavidex::controls::win32 {

class ViewerWindowWin32 final : public OwnWindow, public ViewerWindow {
public:
    ViewerWindowWin32(ctlViewer& logic, const platform::Workstation& workstation);
    ~ViewerWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    void ContentChanged() override;
    void AppearanceChanged() override;
    void WantIdle() override;
    std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) override {
        return lclToolbar.ShowMenu(menu, button);
    }
    std::optional<std::size_t> ShowMenuAt(const PopupMenu& menu, int x, int y) override;
    forms::FormPresenter* Forms() override { return &lclForms; }

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void BuildLook();
    void Layout();
    void ShowParts();
    void Work();
    bool Key(const MSG& message);
    ControlWindow* WindowOfFocus() const; // the part that has it, null: none
    bool OwnColours() const;
    LRESULT Colours(HDC device) const;

    ctlViewer& lclLogic;
    const platform::Workstation& lclWorkstation;
    ToolbarWindow lclToolbar;
    StatusBarWindow lclStatusBar;
    std::array<std::unique_ptr<ControlWindow>, partCount> lclParts; // null until it shows
    forms::win32::WindowsForms lclForms;
    HWND lclNothing = nullptr, lclLastFocus = nullptr;
    GdiObject<HFONT> lclFont;
    GdiObject<HBRUSH> lclBack;
    int lclDpi = 96, lclLine = 16;
    bool lclWorking = false;
};

} // namespace kavidex::controls::win32
