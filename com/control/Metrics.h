// Between the container's units (a hundredth of a millimetre) and the screen's pixels.
#pragma once

#include <windows.h>

namespace kavidex::com {

SIZEL ToHimetric(SIZE pixels) noexcept;
SIZE ToPixels(SIZEL himetric) noexcept;

} // namespace kavidex::com
