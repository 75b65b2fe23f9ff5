// The window of the thumbnails.
#pragma once

#include <windows.h>

#include "controls/common/win32/OwnWindow.h"
#include "controls/viewer/pages/ThumbStrip.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

class ThumbsWindowWin32 final : public OwnWindow, public ThumbsWindow {
public:
    ThumbsWindowWin32(ThumbStrip& thumbs, const platform::Workstation& workstation)
        : lclThumbs(thumbs), lclWorkstation(workstation) {}
    ~ThumbsWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override { ::SetFocus(lclWindow); }
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC, const RECT&) const override {}
    void SetName(std::string_view name);
    void BuildLook(int dpi, HFONT font);

    void Repaint() override;
    void Repaint(int page) override;
    void CurrentChanged() override;
    std::int32_t Drag(const DropData& data) override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    void Paint();
    void PaintCell(HDC device, int page) const;
    void TellRoom();
    void Scrolled(WPARAM w);
    void Pressed(int x, int y, WPARAM keys);
    void OpenMenu(LPARAM position);

    ThumbStrip& lclThumbs;
    const platform::Workstation& lclWorkstation;
    HFONT lclFont = nullptr; // of the window around it
    int lclDpi = 96;
    bool lclQuiet = false; // sizes change by our own doing
};

} // namespace kavidex::controls::win32
