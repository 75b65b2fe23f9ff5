#include "com/control/Metrics.h"

namespace kavidex::com {

namespace {

constexpr int himetricPerInch = 2540;

SIZE Dpi() noexcept {
    const HDC screen = GetDC(nullptr);
    const SIZE dpi{GetDeviceCaps(screen, LOGPIXELSX), GetDeviceCaps(screen, LOGPIXELSY)};
    ReleaseDC(nullptr, screen);
    return dpi;
}

} // namespace

SIZEL ToHimetric(SIZE pixels) noexcept {
    const SIZE dpi = Dpi();
    return {MulDiv(pixels.cx, himetricPerInch, dpi.cx), MulDiv(pixels.cy, himetricPerInch, dpi.cy)};
}

SIZE ToPixels(SIZEL himetric) noexcept {
    const SIZE dpi = Dpi();
    return {MulDiv(himetric.cx, dpi.cx, himetricPerInch),
            MulDiv(himetric.cy, dpi.cy, himetricPerInch)};
}

} // namespace kavidex::com
