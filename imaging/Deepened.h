// A page with more room for colours than its own picture has: for marks in colour over black and
// white.
#pragma once

#include "imaging/PageBitmap.h"

namespace kavidex::imaging {

// As it is when the picture holds as many colours already.
PageBitmap Deepened(PageBitmap bitmap, PixelFormat format);

} // namespace kavidex::imaging
