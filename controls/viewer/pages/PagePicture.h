// Parts of a page's picture at another size, as the viewer puts them on the screen.
#pragma once

#include <cstdint>

#include "imaging/PageBitmap.h"
#include "imaging/RowScaler.h"

namespace kavidex::controls {

// In elements of the scaled picture.
struct PictureArea {
    int left = 0, top = 0, width = 0, height = 0;
};

// Whether the whole picture at that size is worth keeping: it gets smaller, and is no great deal.
bool KeepsScaled(const imaging::PageBitmap& picture, std::uint32_t width, std::uint32_t height);

// Of the picture brought to `width` by `height`, that area.
imaging::PageBitmap ScaledPart(const imaging::PageBitmap& picture, std::uint32_t width,
                               std::uint32_t height, const PictureArea& area);

// grey8 and rgb24 only.
imaging::PageBitmap Cut(const imaging::PageBitmap& picture, const PictureArea& area);
imaging::PageBitmap AsColours(const imaging::PageBitmap& picture); // rgb24

// Around (x, y); what lies outside the picture is left out. rgb24 only.
void FillSquare(imaging::PageBitmap& picture, int x, int y, int half, std::uint8_t level);

} // namespace kavidex::controls
