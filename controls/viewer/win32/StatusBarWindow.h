// The viewer's status bar: the page, a hint that can be double-clicked, the zoom.
#pragma once

#include <array>
#include <string>

#include <windows.h>

#include "controls/viewer/DocumentView.h"

namespace kavidex::controls::win32 {

class StatusBarWindow {
public:
    HWND Create(HWND parent, int id); // lives until its parent goes
    HWND Handle() const { return lclWindow; }
    void Forget();

    void Show(const StatusTexts& texts);
    void BuildLook(int dpi, HFONT font);
    int Height() const;
    void Place(const RECT& place);
    // Whether a notification says that the hint was double-clicked.
    bool HintActivated(const NMHDR& header) const;

private:
    int Needed(int panel) const; // by its text
    void Arrange();
    void CreateTips();

    HWND lclWindow = nullptr, lclTips = nullptr;
    std::array<std::wstring, 3> lclTexts; // of the panels, as they were shown last
    std::wstring lclTip;
    int lclDpi = 96;
};

} // namespace kavidex::controls::win32
