// Pictures of pages onto the screen.
#pragma once

#include <windows.h>

#include "imaging/PageBitmap.h"

namespace kavidex::controls::win32 {

// grey8 and rgb24, as they are, from that place on.
void BlitPicture(HDC device, int x, int y, const imaging::PageBitmap& picture);

// What is drawn in it appears at once. Falls back to the window itself when memory is short.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window);
    ~BufferedPaint();
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC Device() const { return lclMemory ? lclMemory : lclPaint.hdc; }
    const RECT& Area() const { return lclArea; } // of the whole window
    const RECT& Dirty() const { return lclPaint.rcPaint; }

private:
    HWND lclWindow;
    PAINTSTRUCT lclPaint{};
    RECT lclArea{};
    HDC lclMemory = nullptr;
    HBITMAP lclBitmap = nullptr;
    HGDIOBJ lclBefore = nullptr;
};

} // namespace kavidex::controls::win32
