// The picture of an image stamp.
#pragma once

#include <optional>
#include <string_view>

#include "imaging/PageBitmap.h"

namespace kavidex::imaging::annotations {

// A DIB without its file header as red, green and blue. Null when it is damaged or packed.
std::optional<PageBitmap> ReadDib(std::string_view dib);

// Turned by the code of an image mark: 1 none, 2 right, 3 half, 4 left; 5 to 8 mirrored about a
// vertical line before.
PageBitmap TurnedImage(const PageBitmap& image, int code);

} // namespace kavidex::imaging::annotations
