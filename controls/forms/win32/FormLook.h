// What all fields of a form share: fonts, units and pictures at the resolution it is shown in.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/forms/Layout.h"
#include "controls/pictures/win32/IconStore.h"

namespace kavidex::controls::forms::win32 {

class FieldControl;

class FormLook {
public:
    void Build(int dpi);

    int Dpi() const { return lclDpi; }
    HFONT Font(bool bold = false) const { return bold ? lclBold.Get() : lclFont.Get(); }
    // Dialog units as pixels.
    int Wide(int units) const { return MulDiv(units, lclBase.cx, 4); }
    int High(int units) const { return MulDiv(units, lclBase.cy, 8); }

    HIMAGELIST Pictures(bool large = false) const { return (large ? lclLarge : lclSmall).Handle(); }
    int Picture(std::string_view icon, bool large = false); // -1: none
    HICON MakeIcon(std::string_view icon, int size);        // the caller destroys it

    // The captions of the fields, in their order.
    std::vector<std::string> captions;
    HWND dialog = nullptr;
    std::function<FieldControl*(HWND)> controlOf; // whose window it is, null: none

private:
    int lclDpi = 96;
    SIZE lclBase{6, 13};
    controls::win32::GdiObject<HFONT> lclFont, lclBold;
    controls::win32::IconStore lclSmall{16}, lclLarge{32};
};

} // namespace kavidex::controls::forms::win32
