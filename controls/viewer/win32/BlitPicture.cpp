#include "controls/viewer/win32/BlitPicture.h"

#include <cstdint>
#include <vector>

namespace kavidex::controls::win32 {

using imaging::PixelFormat;

void BlitPicture(HDC device, int x, int y, const imaging::PageBitmap& picture) {
    if (picture.width == 0 || picture.height == 0) return;
    std::vector<std::uint32_t> pixels(std::size_t{picture.width} * picture.height);
    const std::uint8_t* from = picture.bytes.data();
    if (picture.format == PixelFormat::rgb24)
        for (auto& pixel : pixels) {
            pixel = static_cast<std::uint32_t>(from[0]) << 16 |
                    static_cast<std::uint32_t>(from[1]) << 8 | from[2];
            from += 3;
        }
    else
        for (auto& pixel : pixels) pixel = *from++ * 0x010101U;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(picture.width);
    info.bmiHeader.biHeight = -static_cast<LONG>(picture.height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    StretchDIBits(device, x, y, static_cast<int>(picture.width), static_cast<int>(picture.height),
                  0, 0, static_cast<int>(picture.width), static_cast<int>(picture.height),
                  pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

BufferedPaint::BufferedPaint(HWND window) : lclWindow(window) {
    BeginPaint(window, &lclPaint);
    GetClientRect(window, &lclArea);
    lclMemory = CreateCompatibleDC(lclPaint.hdc);
    lclBitmap = CreateCompatibleBitmap(lclPaint.hdc, lclArea.right, lclArea.bottom);
    if (lclMemory && lclBitmap) {
        lclBefore = SelectObject(lclMemory, lclBitmap);
    } else if (lclMemory) {
        DeleteDC(lclMemory);
        lclMemory = nullptr;
    }
}

BufferedPaint::~BufferedPaint() {
    if (lclMemory) {
        const RECT& dirty = lclPaint.rcPaint;
        BitBlt(lclPaint.hdc, dirty.left, dirty.top, dirty.right - dirty.left,
               dirty.bottom - dirty.top, lclMemory, dirty.left, dirty.top, SRCCOPY);
        SelectObject(lclMemory, lclBefore);
        DeleteDC(lclMemory);
    }
    if (lclBitmap) DeleteObject(lclBitmap);
    EndPaint(lclWindow, &lclPaint);
}

} // namespace kavidex::controls::win32
