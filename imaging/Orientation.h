// How a page stands: TIFF's eight orientations, and turning picture elements.
#pragma once

#include <cstdint>
#include <vector>

#include "imaging/PageBitmap.h"
#include "imaging/Turn.h"

namespace kavidex::imaging {

// As the tag numbers them: 1 upright, 6 shown after a quarter turn to the right, ...
using Orientation = int;

constexpr bool IsOrientation(std::uint64_t number) { return number >= 1 && number <= 8; }
constexpr bool SwapsSides(Orientation orientation) { return orientation >= 5; }

// The orientation of a page that is turned on top of the one it has.
Orientation Turned(Orientation orientation, Turn turn);

// Rows of `width` elements of so many bits each, every row from a byte of its own.
struct Elements {
    std::uint32_t width = 0, height = 0, bits = 1;
    std::vector<std::uint8_t> bytes;

    std::size_t BytesPerRow() const { return (std::size_t{width} * bits + 7) / 8; }
};

// As they are shown; at most once again as much memory is used on the way.
Elements Oriented(Elements elements, Orientation orientation);
PageBitmap Oriented(PageBitmap bitmap, Orientation orientation);

} // namespace kavidex::imaging
