#include "controls/pictures/win32/PictureIcon.h"

#include <algorithm>
#include <vector>

#include "controls/common/win32/Look.h"

namespace kavidex::controls::win32 {

namespace {

std::uint32_t RgbOf(int systemColour) {
    const COLORREF colour = GetSysColor(systemColour);
    return static_cast<std::uint32_t>(GetRValue(colour) << 16 | GetGValue(colour) << 8 |
                                      GetBValue(colour));
}

// The colours of our own are made for light backgrounds.
bool IsDark(std::uint32_t colour) {
    return 3 * (colour >> 16 & 255) + 6 * (colour >> 8 & 255) + (colour & 255) < 10 * 96;
}

} // namespace

PictureColours SystemColours(int fore, int back) {
    return {HighContrast() || IsDark(RgbOf(back)), RgbOf(fore), RgbOf(back)};
}

HICON IconOf(const Picture& picture) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.size;
    info.bmiHeader.biHeight = -picture.size; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    ICONINFO icon{};
    icon.fIcon = TRUE;
    icon.hbmColor = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    // The mask serves displays that know no alpha.
    const int stride = (picture.size + 15) / 16 * 2;
    std::vector<BYTE> mask(static_cast<std::size_t>(stride) * picture.size);
    for (int line = 0; line < picture.size; ++line)
        for (int column = 0; column < picture.size; ++column) {
            const auto pixel =
                picture.pixels[static_cast<std::size_t>(line) * picture.size + column];
            if (pixel >> 24 < 128)
                mask[static_cast<std::size_t>(line) * stride + column / 8] |=
                    static_cast<BYTE>(0x80 >> column % 8);
        }
    icon.hbmMask = CreateBitmap(picture.size, picture.size, 1, 1, mask.data());
    HICON result = nullptr;
    if (bits && icon.hbmMask) {
        // Icons hold colours that are not multiplied by alpha.
        auto* target = static_cast<std::uint32_t*>(bits);
        for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
            const auto pixel = picture.pixels[i];
            const auto alpha = pixel >> 24;
            std::uint32_t plain = alpha << 24;
            for (int shift = 0; alpha && shift < 24; shift += 8)
                plain |= std::min<std::uint32_t>(255, ((pixel >> shift) & 255) * 255 / alpha)
                         << shift;
            target[i] = plain;
        }
        result = CreateIconIndirect(&icon);
    }
    if (icon.hbmColor) DeleteObject(icon.hbmColor);
    if (icon.hbmMask) DeleteObject(icon.hbmMask);
    return result;
}

} // namespace kavidex::controls::win32
