// The binder control's window: the toolbar on top, below it the folder tree and the documents with
// a splitter between them. A list of documents takes drops as the tree does.
#pragma once

#include <memory>
#include <vector>

#include <windows.h>

#include "controls/binder/BinderWindow.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/common/win32/ToolbarWindow.h"
#include "controls/exchange/win32/DropTarget.h"
#include "controls/forms/win32/WindowsForms.h"
#include "controls/intake/win32/ScanWindow.h"
#include "controls/splitter/win32/SplitWindow.h"

namespace kavidex::controls {
class ctrlCorrespondence;
}

namespace kavidex::controls::win32 {

// Tree and documents with their splitter, as the one panel beside the checklist.
class MainArea final : public ControlWindow {
public:
    MainArea(SplitWindow& splitter, const int& dpi) : lclSplitter(splitter), lclDpi(dpi) {}

    HWND Create(HWND parent, const RECT&) override; // takes the splitter's window over
    void Destroy() override {}
    HWND Handle() const override { return lclSplitter.Handle(); }
    void Place(const RECT& place) override { lclSplitter.Place(place, lclDpi); }
    void TakeFocus() override;
    bool TranslateKey(const MSG&) override { return false; }
    void Draw(HDC, const RECT&) const override {}
    bool HasFocus() const override;

private:
    SplitWindow& lclSplitter;
    const int& lclDpi;
};

class BinderWindowWin32 final : public OwnWindow,
                                public BinderWindow,
                                public ScanPlace,
                                private DropReceiver {
public:
    BinderWindowWin32(ctrlCorrespondence& logic, const platform::Workstation& workstation,
                      ScanObjects objects);
    ~BinderWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    void ToolbarChanged() override;
    void LayoutChanged() override { Layout(); }
    void AppearanceChanged() override;
    void Repaint() override;
    void FocusTree() override;
    void FocusViewer() override;
    std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) override {
        return lclToolbar.ShowMenu(menu, button);
    }
    forms::FormPresenter* Forms() override { return &lclForms; }
    ScanPlace* Scanner() override { return this; }
    std::unique_ptr<forms::PaneContent> MakePane(ctlViewer& viewer) override;
    void OpenScanner(const ScanSetup& setup) override;
    void TellScanner(const ScanSetup& setup) override {
        if (lclScanner) lclScanner->Configure(setup);
    }
    void CloseScanner() override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    std::int32_t DragMoved(DragState state, const DropData& data, const DropPlace& place) override;
    std::int32_t DragDropped(const DropData& data, const DropPlace& place) override;
    void WindowGoes();
    void Layout();
    std::vector<HWND> Stops() const; // what the Tab key visits, in order
    bool TabKey(bool back);
    ControlWindow& BesideTree() const;
    void ShowChecklist();
    bool ChecklistVisible() const;

    ctrlCorrespondence& lclLogic;
    const platform::Workstation& lclWorkstation;
    HWND lclLastFocus = nullptr;
    int lclDpi = 96;
    forms::win32::WindowsForms lclForms{lclWorkstation, [this] { return lclWindow; }};
    ToolbarWindow lclToolbar;
    SplitWindow lclSplitter;
    std::unique_ptr<ControlWindow> lclTree, lclPanel;
    DropRegistration lclListDrops; // on the panel
    ScanObjects lclScanObjects;
    std::unique_ptr<ScanWindow> lclScanner; // in the panel's place while it is there
    MainArea lclMain{lclSplitter, lclDpi};
    SplitWindow lclSpCheckList;                  // made with the checklist
    std::unique_ptr<ControlWindow> lclChecklist; // when it is first shown
};

} // namespace kavidex::controls::win32
