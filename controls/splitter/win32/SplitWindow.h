// The splitter's window: it holds the two panels' windows and draws the bar between them.
#pragma once

#include <memory>

#include <windows.h>

#include "controls/common/win32/ControlWindow.h"
#include "controls/splitter/ctlSplitPanel.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

class SplitWindow {
public:
    // Both must outlive the window.
    SplitWindow(ctlSplitPanel& logic, const platform::Workstation& workstation)
        : lclLogic(logic), lclWorkstation(workstation) {}
    ~SplitWindow() { Destroy(); }
    SplitWindow(const SplitWindow&) = delete;
    SplitWindow& operator=(const SplitWindow&) = delete;

    HWND Create(HWND parent, const wchar_t* name);
    // Makes the panels' windows within this one; each may be null.
    bool SetPanels(ControlWindow* first, ControlWindow* second);
    void Destroy();
    HWND Handle() const { return lclWindow; }
    void Place(const RECT& place, int dpi);

    // The bar, as a place for the keyboard.
    bool BarHasFocus() const { return lclWindow && GetFocus() == lclWindow; }
    bool BarTakesFocus() const { return lclLogic.BarVisible() && lclLogic.AllowMove(); }
    bool UsesKey(WPARAM key) const;

    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    class Panel : public HostedControl {
    public:
        Panel(ControlWindow& window, SplitWindow& splitter)
            : lclWindow(window), lclSplitter(splitter) {}
        void Place(const Box& place) override;
        void Show(bool visible) override;

    private:
        ControlWindow& lclWindow;
        SplitWindow& lclSplitter;
    };

    void Paint();
    bool Key(WPARAM key);
    void FocusElsewhere(const ControlWindow& hidden);

    ctlSplitPanel& lclLogic;
    const platform::Workstation& lclWorkstation;
    HWND lclWindow = nullptr;
    ControlWindow* lclWindows[2] = {};
    std::unique_ptr<Panel> lclPanels[2];
    std::shared_ptr<void> lclChanged;
};

} // namespace kavidex::controls::win32
