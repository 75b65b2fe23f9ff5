// Grid on the stage: the folder's caption, and below it the list of its documents.
#pragma once

#include <windows.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/lists/win32/ListWindowWin32.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::controls {
class ctlViewer;
class ListView;
} // namespace kavidex::controls

namespace kavidex::controls::win32 {

class GridWindow final : public OwnWindow {
public:
    GridWindow(ctlViewer& viewer, const platform::Workstation& workstation);
    ~GridWindow() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override { ::SetFocus(lclList.Handle()); }
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void BuildLook();
    void Layout();
    void ShowCaption();

    ctlViewer& lclViewer;
    ListView& lclView;
    const platform::Workstation& lclWorkstation;
    ListWindowWin32 lclList;
    HWND lclCaption = nullptr;
    GdiObject<HFONT> lclFont, lclBold;
    std::shared_ptr<void> lclShown;
    int lclDpi = 96, lclLine = 16;
};

} // namespace kavidex::controls::win32
