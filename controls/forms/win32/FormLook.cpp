#include "controls/forms/win32/FormLook.h"

#include "controls/common/win32/Look.h"

namespace kavidex::controls::forms::win32 {

namespace {

// The average width and the height of a letter, as dialogs are measured by.
SIZE BaseUnits(HFONT font) {
    const HDC device = GetDC(nullptr);
    const HGDIOBJ old = SelectObject(device, font);
    SIZE letters{};
    GetTextExtentPoint32W(device, L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", 52,
                          &letters);
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    SelectObject(device, old);
    ReleaseDC(nullptr, device);
    return {(letters.cx / 26 + 1) / 2, metrics.tmHeight};
}

} // namespace

void FormLook::Build(int dpi) {
    lclDpi = dpi;
    lclFont.Reset(controls::win32::MakeFont(std::nullopt, dpi));
    LOGFONTW face{};
    GetObjectW(lclFont.Get(), sizeof face, &face);
    face.lfWeight = FW_BOLD;
    lclBold.Reset(CreateFontIndirectW(&face));
    lclBase = BaseUnits(lclFont.Get());
    lclSmall.Build(dpi);
    lclLarge.Build(dpi);
}

int FormLook::Picture(std::string_view icon, bool large) {
    return icon.empty() ? -1 : (large ? lclLarge : lclSmall).Of(icon);
}

HICON FormLook::MakeIcon(std::string_view icon, int size) {
    const bool large = size > controls::win32::Scaled(16, lclDpi);
    const int index = Picture(icon, large);
    return index < 0 ? nullptr : ImageList_GetIcon(Pictures(large), index, ILD_TRANSPARENT);
}

} // namespace kavidex::controls::forms::win32
