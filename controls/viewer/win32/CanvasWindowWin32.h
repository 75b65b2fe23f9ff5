// The window of a page: it paints what the canvas sees, and tells it of the user.
#pragma once

#include <memory>
#include <string>

#include <windows.h>

#include "controls/common/Appearance.h"
#include "controls/common/win32/GdiObject.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/viewer/pages/PageCanvas.h"
#include "imaging/annotations/TextPainter.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

class CanvasWindowWin32 final : public OwnWindow, public CanvasWindow {
public:
    CanvasWindowWin32(PageCanvas& canvas, const platform::Workstation& workstation);
    ~CanvasWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override { ::SetFocus(lclWindow); }
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;
    void SetName(std::string_view name); // how it is called when it is read out
    void BuildLook(int dpi, HFONT font);

    void Repaint() override;
    void RoomChanged() override;
    imaging::annotations::TextPainter& Texts() override { return *lclTexts; }

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void Paint();
    void TellRoom();
    void ShowBars();
    void Scrolled(int bar, WPARAM w);
    void OpenMenu(LPARAM position);
    bool ShowPointer() const;

    PageCanvas& lclCanvas;
    const platform::Workstation& lclWorkstation;
    std::unique_ptr<imaging::annotations::TextPainter> lclTexts;
    HFONT lclFont = nullptr; // of the window around it
    int lclDpi = 96;
    bool lclQuiet = false; // sizes change by our own doing
};

} // namespace kavidex::controls::win32
