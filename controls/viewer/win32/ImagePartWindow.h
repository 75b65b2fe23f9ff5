// The image part of the viewer's stage: the toolbox above, the thumbnails beside the page.
#pragma once

#include <memory>

#include <windows.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/common/win32/ToolbarWindow.h"
#include "controls/splitter/win32/SplitWindow.h"
#include "controls/viewer/pages/ImageWindow.h"
#include "controls/viewer/win32/CanvasWindowWin32.h"
#include "controls/viewer/win32/ThumbsWindowWin32.h"

namespace kavidex::controls {
class ctlViewer;
}

namespace kavidex::controls::win32 {

class ImagePartWindow final : public OwnWindow, public ImageWindow {
public:
    ImagePartWindow(ctlViewer& viewer, const platform::Workstation& workstation);
    ~ImagePartWindow() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override { lclCanvas.TakeFocus(); }
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override { lclCanvas.Draw(device, place); }

    void ContentChanged() override;
    std::optional<std::size_t> ShowMenu(const PopupMenu& menu, std::string_view button) override {
        return lclToolbox.ShowMenu(menu, button);
    }

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void BuildLook();
    void Layout();

    ctlViewer& lclViewer;
    const platform::Workstation& lclWorkstation;
    ctlSplitPanel lclSplit;
    CanvasWindowWin32 lclCanvas;
    ThumbsWindowWin32 lclThumbs;
    ToolbarWindow lclToolbox;
    SplitWindow lclSplitter;
    GdiObject<HFONT> lclFont;
    int lclDpi = 96;
};

std::unique_ptr<ControlWindow> MakeImagePart(ctlViewer& viewer,
                                             const platform::Workstation& workstation);

} // namespace kavidex::controls::win32
