// The document panel's window: a caption, and below it a list of documents, the facts of one, or a
// line that asks to select one.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/lists/win32/ListWindowWin32.h"
#include "controls/viewer/DocumentPanel.h"

namespace kavidex::controls::win32 {

class PanelWindowWin32 final : public OwnWindow, public PanelWindow {
public:
    PanelWindowWin32(DocumentPanel& logic, const platform::Workstation& workstation)
        : lclLogic(logic), lclWorkstation(workstation), lclList(logic.List()) {}
    ~PanelWindowWin32() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override;
    void TakeFocus() override;
    bool TranslateKey(const MSG& message) override;
    void Draw(HDC device, const RECT& place) const override;

    void ContentChanged() override;
    void AppearanceChanged() override;

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);

private:
    static constexpr int factCount = 6;

    bool CreateChildren();
    HWND Child(const wchar_t* type, DWORD style, DWORD exStyle, int id);
    HWND FirstStop() const; // what takes the focus; null when nothing can
    void BuildLook();
    void Layout();
    void LayoutFacts(const RECT& area);
    void FillFacts();
    LRESULT Colours(HDC device) const;
    bool OwnColours() const;

    DocumentPanel& lclLogic;
    const platform::Workstation& lclWorkstation;
    ListWindowWin32 lclList;
    HWND lclCaption = nullptr, lclNothing = nullptr;
    HWND lclLabels[factCount] = {}, lclValues[factCount] = {};
    HWND lclMissing = nullptr, lclOpen = nullptr;
    GdiObject<HFONT> lclFont, lclBold;
    GdiObject<HBRUSH> lclBack;
    int lclDpi = 96, lclLine = 16;
};

} // namespace kavidex::controls::win32
